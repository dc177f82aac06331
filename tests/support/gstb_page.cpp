// SPDX-License-Identifier: Apache-2.0
#include "tests/support/gstb_page.h"

#include "platform/box_paths.h"

#include <QFile>
#include <QWebFrame>

GstbPage::Folder::Folder(const std::function<void(const QString &folder)> &prepare)
{
    BoxPaths::setRoot(root.path());
    qputenv("APP_HOME", QFile::encodeName(root.path() + '/'));
    qputenv("Q_PRIVATE_SETTING_PATH", "settings");
    if (prepare)
        prepare(root.path());
}

GstbPage::GstbPage(const std::function<void(const QString &folder)> &prepare)
    : m_folder(prepare)
    , requests(gSTB)
{
    publish("gSTB", gSTB);
}

void GstbPage::publish(const QString &name, QObject &object)
{
    m_page.mainFrame()->addToJavaScriptWindowObject(name, &object);
}

QVariant GstbPage::evaluate(QString script)
{
    return m_page.mainFrame()->evaluateJavaScript(script.replace("ROOT", m_folder.root.path()));
}

QString GstbPage::answer(const QString &expression)
{
    return evaluate("var answer = (" + expression +
                    "); answer === undefined ? 'null' : JSON.stringify(answer)")
        .toString();
}
