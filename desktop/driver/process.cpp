// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/process.h"

#include <QFile>

#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int firstExtra = 3;
constexpr int signalled = 128; ///< Added to a signal's number in an exit code.

/** Arguments or variables as exec takes them. */
class CStrings
{
public:
    explicit CStrings(const QStringList &texts)
    {
        for (const QString &text : texts)
            m_bytes.push_back(QFile::encodeName(text));
        for (QByteArray &bytes : m_bytes)
            m_pointers.push_back(bytes.data());
        m_pointers.push_back(nullptr);
    }

    char **data() { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_bytes;
    std::vector<char *> m_pointers;
};

} // namespace

Descriptor::Descriptor(Descriptor &&other) noexcept
    : m_number(std::exchange(other.m_number, -1))
{
}

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept
{
    reset(std::exchange(other.m_number, -1));
    return *this;
}

void Descriptor::reset(int number)
{
    if (m_number >= 0 && m_number != number)
        ::close(m_number);
    m_number = number;
}

Pipe makePipe()
{
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return Pipe();
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

bool Process::start(const ProcessStart &how)
{
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    const auto give = [&files](int from, int to, int mode) {
        if (from >= 0)
            posix_spawn_file_actions_adddup2(&files, from, to);
        else
            posix_spawn_file_actions_addopen(&files, to, "/dev/null", mode, 0);
    };
    // First the extra one: its number may be that of another here.
    if (how.extra >= 0)
        posix_spawn_file_actions_adddup2(&files, how.extra, firstExtra);
    give(how.input, STDIN_FILENO, O_RDONLY);
    give(how.output, STDOUT_FILENO, O_WRONLY);
    posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&files, firstExtra + (how.extra >= 0 ? 1 : 0));

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK |
                                              POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setpgroup(&attributes, how.group);
    sigset_t blocked;
    sigemptyset(&blocked);
    posix_spawnattr_setsigmask(&attributes, &blocked);
    sigaddset(&blocked, SIGPIPE);
    sigaddset(&blocked, SIGINT);
    sigaddset(&blocked, SIGTERM);
    posix_spawnattr_setsigdefault(&attributes, &blocked);

    CStrings arguments(QStringList{how.program} + how.arguments);
    CStrings environment(how.environment);
    m_running = ::posix_spawnp(&m_id, QFile::encodeName(how.program).constData(), &files,
                               &attributes, arguments.data(), environment.data()) == 0;
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    if (!m_running)
        m_id = -1;
    return m_running;
}

bool Process::isRunning()
{
    if (m_running && ::waitpid(m_id, &m_status, WNOHANG) != 0)
        m_running = false;
    return m_running;
}

bool Process::waitForEnd(std::chrono::milliseconds time)
{
    const auto deadline = std::chrono::steady_clock::now() + time;
    while (isRunning()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool Process::hasSucceeded() const { return WIFEXITED(m_status) && WEXITSTATUS(m_status) == 0; }

QString Process::end() const
{
    if (WIFSIGNALED(m_status))
        return QString("was killed by signal %1").arg(WTERMSIG(m_status));
    // In this way bwrap says it of what it ran.
    if (WEXITSTATUS(m_status) > signalled)
        return QString("was killed by signal %1").arg(WEXITSTATUS(m_status) - signalled);
    return QString("ended with %1").arg(WEXITSTATUS(m_status));
}
