// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/driver/driver.h"

#include <memory>

namespace httplib {
class Server;
}

/**
 * Whether a request may come in: its Host names this machine or an allowed host, and it is not
 * sent by a web page of an origin that is not allowed. Null texts are headers that are not there.
 */
bool isAllowed(const QString &host, const QString &origin, const DriverOptions &options);

/** The HTTP server of the driver, on loopback only. */
class HttpFront
{
public:
    HttpFront(Driver &driver, const DriverOptions &options);
    ~HttpFront();

    /** Takes the port, any free one for 0. Returns it, or 0 if it is not free. */
    int bind(int port);

    /** Serves until stop(). */
    void serve();
    void stop();

private:
    std::unique_ptr<httplib::Server> m_server;
};
