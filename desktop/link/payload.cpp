// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/payload.h"

#include "enigma2/struct_codec.h"

#include <QJsonDocument>

namespace {

constexpr int integerSize = 4;

} // namespace

int integerAt(const QByteArray &payload, int index)
{
    const QByteArray bytes =
        payload.mid(index * integerSize, integerSize).leftJustified(integerSize, '\0');
    int value = 0;
    struct_unpack(bytes.constData(), "!I", &value);
    return value;
}

QString commandText(const QByteArray &payload) { return QString::fromLatin1(payload); }

QJsonObject commandObject(const QByteArray &payload)
{
    return QJsonDocument::fromJson(commandText(payload).toUtf8()).object();
}

QByteArray integerPayload(int value)
{
    QByteArray bytes(integerSize, '\0');
    struct_pack(bytes.data(), "!I", value);
    return bytes;
}

QByteArray integerPayload(int first, int second)
{
    return integerPayload(first) + integerPayload(second);
}
