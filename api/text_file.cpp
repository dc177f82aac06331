// SPDX-License-Identifier: Apache-2.0
#include "api/text_file.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

std::optional<QString> firstWordOfFile(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    QString word;
    stream >> word;
    return word;
}

bool replaceFile(const QString &path, const QString &text)
{
    const QFileInfo info(path);
    QFile file(path);
    if ((info.exists() && !info.isFile()) || !file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    file.write(text.toUtf8());
    return true;
}
