// SPDX-License-Identifier: Apache-2.0
#include "tests/desktop/driver/driver_test.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QtTest>

void DriverTest::startOn(const char *page)
{
    if (QStandardPaths::findExecutable("Xvfb").isEmpty())
        QSKIP("Xvfb is not installed, so that no box can be started.");
    m_server.page("/page", page);
    m_url = m_server.url("/page").toEncoded();
    QVERIFY(m_client.start());
    const DriverClient::Answer answer = m_client.begin();
    QVERIFY2(answer.status == 200, compact(answer.value));
}

QByteArray DriverTest::compact(const QJsonValue &value)
{
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2);
}
