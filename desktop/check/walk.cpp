// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/walk.h"

#include <QThread>

#include <utility>

namespace {

// A program that ends and is started again is away for longer.
constexpr unsigned long awayMs = 100;

} // namespace

Walk::Walk(QByteArray path, QDeadlineTimer overall)
    : m_path(std::move(path))
    , m_overall(overall)
{
}

QString Walk::restart()
{
    if (m_session) {
        m_session.reset();
        QThread::msleep(awayMs);
    }
    auto session = std::make_unique<Session>(m_path, m_overall, findings);
    m_fault = session->open();
    m_isReached = m_isReached || session->isReached();
    if (m_fault.isEmpty())
        m_session = std::move(session);
    return m_fault;
}

Session *Walk::session()
{
    if (!m_session || !m_session->isOpen())
        restart();
    return m_session.get();
}

void Walk::noteAnswered(Command request, const QByteArray &payload)
{
    m_answered.insert(static_cast<int>(request));
    // The cheapest one, if it is answered: it asks no disk and changes nothing.
    const bool isBest = request == Command::PvrGetAllTasks;
    if (m_probe && !isBest)
        return;
    m_probe = request;
    m_probePayload = payload;
}

Reply Walk::probe()
{
    if (!m_session)
        return {takesNoConnection, {}, false};
    if (!m_session->isOpen())
        return {"The receiver has closed a connection.", {}, false};
    return m_session->request(*m_probe, m_probePayload);
}

QByteArray Walk::probeFrame() const
{
    return commandFrame(static_cast<int>(*m_probe), m_probePayload);
}
