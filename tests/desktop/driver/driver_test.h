// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/desktop/driver/driver_client.h"
#include "tests/support/http_server.h"

#include <QByteArray>
#include <QJsonValue>
#include <QObject>

/** What tests of the driver have in common: a session whose box is on a page of the test's. */
class DriverTest : public QObject
{
protected:
    /** For initTestCase: starts driver and session; fails or skips the test where that cannot be.
     */
    void startOn(const char *page);

    /** Loads the page anew. */
    void openPage() { m_client.post("url", R"({"url":")" + m_url + R"("})"); }

    /** A value as JSON without spaces. */
    static QByteArray compact(const QJsonValue &value);

    HttpServer m_server;
    DriverClient m_client;

private:
    QByteArray m_url;
};
