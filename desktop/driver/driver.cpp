// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/driver.h"

#include "desktop/driver/webdriver_error.h"

#include <QJsonDocument>
#include <QUuid>

#include <utility>
#include <vector>

namespace {

QByteArray text(const QJsonObject &body)
{
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

QJsonObject parametersOf(const QString &method, const QByteArray &body)
{
    if (method != "POST")
        return {};
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (!document.isObject())
        failArgument("The body is to be a JSON object: " + error.errorString());
    return document.object();
}

} // namespace

Driver::Driver(const BoxPrograms &programs, const DriverOptions &options)
    : m_programs(programs)
    , m_options(options)
    , m_reaper(&Driver::endIdleSessions, this)
{
}

Driver::~Driver()
{
    endSessions();
    m_reaper.join();
}

void Driver::endSessions()
{
    QMap<QString, std::shared_ptr<Session>> sessions;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_ended = true;
    m_ending.notify_all();
    for (const auto &session : std::as_const(m_sessions))
        session->giveUp();
    sessions.swap(m_sessions);
}

DriverAnswer Driver::handle(const QString &method, const QString &path, const QByteArray &body)
{
    try {
        return {200, text({{"value", run(method, path, body)}})};
    } catch (const WebDriverError &error) {
        return {statusOf(error.code), text(bodyOf(error))};
    }
}

QJsonValue Driver::run(const QString &method, const QString &path, const QByteArray &body)
{
    const EndpointMatch match = matchEndpoint(method, path);
    const QString id = match.call.variables.value("session id");
    if (id.isEmpty())
        return method == "GET" ? status() : newSession(parametersOf(method, body));
    const std::shared_ptr<Session> session = find(id);
    if (!match.endpoint->handler) {
        // Not behind a command that may never end.
        session->giveUp();
        remove(id);
        return {};
    }
    CommandCall call = match.call;
    call.parameters = parametersOf(method, body);
    QJsonValue result;
    try {
        result = session->execute(*match.endpoint, call);
    } catch (const WebDriverError &) {
        if (session->isOver())
            remove(id);
        throw;
    }
    if (session->isOver())
        remove(id);
    return result;
}

QJsonValue Driver::newSession(const QJsonObject &parameters)
{
    const SessionRequest request = chooseCapabilities(parameters);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_ended || m_sessions.size() + m_starting >= m_options.maxSessions) {
            fail("session not created",
                 QString("There are %1 sessions already.").arg(m_sessions.size() + m_starting));
        }
        ++m_starting;
    }
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    std::shared_ptr<Session> session;
    try {
        session = std::make_shared<Session>(id, m_programs, request);
    } catch (const WebDriverError &error) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        --m_starting;
        fail("session not created", error.message);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    --m_starting;
    m_sessions[id] = session;
    return QJsonObject{{"sessionId", id}, {"capabilities", session->capabilities()}};
}

QJsonValue Driver::status()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool ready = m_sessions.size() + m_starting < m_options.maxSessions;
    return QJsonObject{
        {"ready", ready},
        {"message", QString("%1 of %2 sessions").arg(m_sessions.size()).arg(m_options.maxSessions)},
        {"build", QJsonObject{{"version", driverVersion()}}},
        {"os", QJsonObject{{"name", "linux"}}}};
}

std::shared_ptr<Session> Driver::find(const QString &id)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::shared_ptr<Session> session = m_sessions.value(id);
    if (!session)
        fail("invalid session id", "There is no session " + id.left(100) + '.');
    return session;
}

void Driver::remove(const QString &id)
{
    // Declared before the lock: the box ends after it, with the last command that still runs.
    std::shared_ptr<Session> session;
    const std::lock_guard<std::mutex> lock(m_mutex);
    session = m_sessions.take(id);
}

void Driver::endIdleSessions()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_ended) {
        m_ending.wait_for(lock, std::chrono::seconds(1));
        if (m_options.idleTime.count() == 0)
            continue;
        std::vector<std::shared_ptr<Session>> idle;
        for (auto row = m_sessions.begin(); row != m_sessions.end();) {
            if ((*row)->idleTime() > m_options.idleTime) {
                (*row)->giveUp();
                idle.push_back(*row);
                row = m_sessions.erase(row);
            } else {
                ++row;
            }
        }
        lock.unlock();
        idle.clear();
        lock.lock();
    }
}
