// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/http_front.h"

#include "desktop/driver/http_connection.h"
#include "desktop/driver/webdriver_error.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QUrl>

#include <algorithm>

namespace {

constexpr int threads = 96; ///< Each open connection of a client holds one.
constexpr int slowClientSeconds = 30;
constexpr int idleConnectionSeconds = 60;
constexpr std::size_t largestBody = 64 << 20;

QString header(const httplib::Request &request, const char *name)
{
    return request.has_header(name) ? QString::fromStdString(request.get_header_value(name))
                                    : QString();
}

void setAnswer(httplib::Response &response, const DriverAnswer &answer)
{
    response.status = answer.status;
    response.set_header("Cache-Control", "no-cache");
    response.set_content(answer.body.constData(), std::size_t(answer.body.size()),
                         "application/json; charset=utf-8");
}

DriverAnswer refusal(int status, const QString &message)
{
    const QJsonObject body = bodyOf({"unknown error", message, {}, {}});
    return {status, QJsonDocument(body).toJson(QJsonDocument::Compact)};
}

} // namespace

bool isAllowed(const QString &host, const QString &origin, const DriverOptions &options)
{
    // A page whose name was made to point at this machine still sends its own name.
    const QString name = QUrl("http://" + host).host();
    const QHostAddress address(name);
    const bool local = name == "localhost" || name.endsWith(".localhost") ||
                       (!address.isNull() && address.isLoopback());
    if (!local && !options.allowedHosts.contains(name))
        return false;
    return origin.isNull() || options.allowedOrigins.contains(origin);
}

HttpFront::HttpFront(Driver &driver, const DriverOptions &options)
    : m_server(
          std::make_unique<ForgivingServer>(slowClientSeconds, idleConnectionSeconds, largestBody))
{
    m_server->new_task_queue = [] { return new httplib::ThreadPool(threads); };
    m_server->set_tcp_nodelay(true);
    m_server->set_keep_alive_max_count(1000000);
    const auto handle = [&driver, options](const httplib::Request &request,
                                           httplib::Response &response) {
        if (!isAllowed(header(request, "Host"), header(request, "Origin"), options)) {
            setAnswer(response, refusal(403, "The request's Host or Origin is not allowed here."));
            return;
        }
        const std::string path = request.target.empty() ? request.path : request.target;
        setAnswer(response, driver.handle(QString::fromStdString(request.method),
                                          QString::fromStdString(path),
                                          QByteArray::fromStdString(request.body)));
    };
    const char everything[] = R"([\s\S]*)";
    m_server->Get(everything, handle);
    m_server->Post(everything, handle);
    m_server->Put(everything, handle);
    m_server->Patch(everything, handle);
    m_server->Delete(everything, handle);
    m_server->Options(everything, handle);
    m_server->set_error_handler([](const httplib::Request &, httplib::Response &response) {
        if (response.body.empty())
            setAnswer(response, refusal(response.status, "The request cannot be read."));
    });
}

HttpFront::~HttpFront() = default;

int HttpFront::bind(int port)
{
    if (port == 0)
        return std::max(m_server->bind_to_any_port("127.0.0.1"), 0);
    return m_server->bind_to_port("127.0.0.1", port) ? port : 0;
}

void HttpFront::serve() { m_server->listen_after_bind(); }

void HttpFront::stop() { m_server->stop(); }
