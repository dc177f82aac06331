// SPDX-License-Identifier: Apache-2.0
#include "tests/support/log_capture.h"

#include <QMutex>
#include <QMutexLocker>

namespace {

QMutex mutex;
QStringList messages;
QtMessageHandler previous = nullptr;

void keep(QtMsgType, const QMessageLogContext &, const QString &message)
{
    QMutexLocker locker(&mutex);
    messages.append(message);
}

} // namespace

LogCapture::LogCapture()
{
    take();
    previous = qInstallMessageHandler(keep);
}

LogCapture::~LogCapture() { qInstallMessageHandler(previous); }

QStringList LogCapture::take()
{
    QMutexLocker locker(&mutex);
    QStringList taken;
    taken.swap(messages);
    return taken;
}
