// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QProcess>

/**
 * A program that does not outlive this one: when this process dies, however it dies, the system
 * sends the child SIGTERM. Its input and output are those of QProcess.
 */
class ChildProcess : public QProcess
{
    Q_OBJECT

public:
    using QProcess::QProcess;

    /** Lets the child inherit this descriptor under its number; to be called before start(). */
    void inherit(int descriptor) { m_inherited = descriptor; }

protected:
    void setupChildProcess() override;

private:
    int m_inherited = -1;
};
