// SPDX-License-Identifier: Apache-2.0
/*
 * How a box is started and ended.
 */
#include "desktop/driver/box.h"

#include "desktop/driver/confinement.h"
#include "desktop/driver/keeper.h"
#include "desktop/driver/webdriver_error.h"
#include "platform/environment.h"
#include "platform/screen_size.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

constexpr auto startTime = 30s; ///< The longest that any part of a start may take.

bool readable(const Descriptor &descriptor, std::chrono::milliseconds time)
{
    pollfd polled{descriptor.number(), POLLIN, 0};
    return ::poll(&polled, 1, int(time.count())) > 0;
}

QSize screenOf(const BoxOptions &options, const Profile &profile)
{
    if (options.screen.isValid())
        return options.screen;
    const QSize ofModel = screenSize(profile.value(Environment::window));
    return ofModel.isValid() ? ofModel : QSize(1280, 720);
}

bool hasMpv() { return !QStandardPaths::findExecutable("mpv").isEmpty(); }

} // namespace

Box::Box(const BoxPrograms &programs, const SessionRequest &request)
    : m_wake(makePipe())
{
    try {
        QString failure;
        const Profile profile = readProfile(programs.profiles, request.box.profile, failure);
        if (!failure.isEmpty())
            fail("session not created", failure);
        makeFolder(programs, request.box);
        startKeeper(programs.driver);
        startDisplay(screenOf(request.box, profile));
        startReceiver(programs, request.box);
        startProgram(programs, request, profile);
        startCompositor();
        m_watcher = std::thread(&Box::watch, this);
        waitForProgram();
    } catch (...) {
        stop();
        throw;
    }
}

Box::~Box() { stop(); }

void Box::makeFolder(const BoxPrograms &programs, const BoxOptions &options)
{
    QByteArray name = QFile::encodeName(QDir::tempPath()) + "/vesprel-driver.XXXXXX";
    if (!::mkdtemp(name.data()))
        fail("session not created", "No folder can be made in " + QDir::tempPath());
    m_folder = QFile::decodeName(name);
    const QDir folder(m_folder);
    for (const char *part :
         {"box/home", "box/etc", "box/media", "user", "run", "box/usr/share/vesprel/web/system"})
        folder.mkpath(part);
    QFile::link(programs.keyboardPages,
                folder.filePath("box/usr/share/vesprel/web/system/keyboard"));
    QFile::setPermissions(folder.filePath("run"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    // The demo portal's clips, where a box on the desk has made them.
    const QFileInfo clips(programs.clips);
    if (options.player != "simulated" && clips.exists())
        QFile::link(clips.canonicalFilePath(), folder.filePath("box/media/demo"));
}

void Box::startKeeper(const QString &driver)
{
    Pipe pipe = makePipe();
    ProcessStart how;
    how.program = driver;
    how.arguments = QStringList{keeperOption, m_folder};
    how.environment = QProcessEnvironment::systemEnvironment().toStringList();
    how.input = pipe.read.number();
    how.output = STDERR_FILENO;
    if (!m_keeper.start(how)) {
        QDir(m_folder).removeRecursively();
        fail("session not created", "The keeper of the box cannot be started.");
    }
    m_keeperPipe = std::move(pipe.write);
}

QStringList Box::environment() const
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    // Nothing of the user's own desktop or box leaks into a session.
    const QStringList names = variables.keys();
    for (const QString &name : names) {
        for (const char *prefix : {"Q_", "QT_", "VESPREL_", "WAYLAND_", "XDG_", "portal1"}) {
            if (name.startsWith(prefix))
                variables.remove(name);
        }
    }
    const QDir user(m_folder + "/user");
    variables.insert("HOME", user.path());
    variables.insert("XDG_CONFIG_HOME", user.filePath("config"));
    variables.insert("XDG_CACHE_HOME", user.filePath("cache"));
    variables.insert("XDG_DATA_HOME", user.filePath("data"));
    variables.insert("XDG_RUNTIME_DIR", m_folder + "/run");
    variables.insert("TMPDIR", m_folder + "/run");
    variables.insert("DISPLAY", m_displayName);
    variables.insert("VESPREL_ROOT", m_folder + "/box");
    return variables.toStringList();
}

void Box::startChild(Process &process, ProcessStart how, const char *package)
{
    how.environment += environment();
    how.group = m_group;
    if (!process.start(how)) {
        fail(
            "session not created",
            QString("%1 cannot be started%2")
                .arg(how.program, package ? QString("; install the package %1").arg(package) : ""));
    }
}

void Box::startDisplay(const QSize &screen)
{
    Pipe number = makePipe();
    ProcessStart how;
    how.program = "Xvfb";
    // Without the keyboard's own repetition: a key that is held is pressed once.
    how.arguments = QStringList{"-displayfd",
                                "3",
                                "-screen",
                                "0",
                                QString("%1x%2x24").arg(screen.width()).arg(screen.height()),
                                "-nolisten",
                                "tcp",
                                "-noreset",
                                "-r"};
    how.extra = number.write.number();
    startChild(m_xvfb, how, "xvfb");
    m_group = m_xvfb.id();
    const QByteArray line = QByteArray::number(m_group) + '\n';
    if (::write(m_keeperPipe.number(), line.constData(), std::size_t(line.size())) < 0)
        fail("session not created", "The keeper of the box is gone.");
    number.write.reset();
    QByteArray text;
    char byte = 0;
    while (byte != '\n' && readable(number.read, startTime) &&
           ::read(number.read.number(), &byte, 1) == 1)
        text += byte;
    if (byte != '\n')
        fail("session not created", "Xvfb did not start.");
    m_displayName = ":" + QString::fromLatin1(text.trimmed());
    m_display = Display::open(m_displayName, Display::Keyboard::Arranged);
    if (!m_display)
        fail("session not created", "The display " + m_displayName + " cannot be used.");
}

void Box::startReceiver(const BoxPrograms &programs, const BoxOptions &options)
{
    const QString player =
        options.player.isEmpty() ? QString(hasMpv() ? "mpv" : "simulated") : options.player;
    if (player == "mpv" && !hasMpv())
        fail("session not created", "mpv is not installed.");
    Pipe input = makePipe();
    Pipe output = makePipe();
    const QString ready = m_folder + "/run/receiver";
    ProcessStart how;
    how.program = programs.receiver;
    how.arguments = QStringList{"--ready", ready, "--player", player};
    how.input = input.read.number();
    how.output = output.write.number();
    confine(how, m_folder);
    startChild(m_receiver, how, nullptr);
    m_receiverInput = std::move(input.write);
    // A receiver that does not read must not hold its session up.
    ::fcntl(m_receiverInput.number(), F_SETFL, O_NONBLOCK);
    m_receiverOutput = std::move(output.read);
    input.read.reset();
    output.write.reset();
    const auto deadline = std::chrono::steady_clock::now() + startTime;
    while (!QFileInfo::exists(ready)) {
        if (!m_receiver.isRunning() || std::chrono::steady_clock::now() > deadline) {
            QByteArray words(4096, '\0');
            const bool any = readable(m_receiverOutput, 0ms);
            words.resize(any ? int(std::max<ssize_t>(::read(m_receiverOutput.number(), words.data(),
                                                            std::size_t(words.size())),
                                                     0))
                             : 0);
            fail("session not created", "The receiver did not start: " + QString::fromUtf8(words));
        }
        std::this_thread::sleep_for(2ms);
    }
}

void Box::listen()
{
    const QByteArray path = QFile::encodeName(m_folder + "/run/driver");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (std::size_t(path.size()) >= sizeof address.sun_path)
        fail("session not created", "The path of the temporary folder is too long for a socket.");
    std::strcpy(address.sun_path, path.constData());
    m_listener.reset(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (::bind(m_listener.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) !=
            0 ||
        ::listen(m_listener.number(), 1) != 0)
        fail("session not created", "The socket for the program cannot be made.");
}

void Box::startProgram(const BoxPrograms &programs, const SessionRequest &request,
                       const Profile &profile)
{
    listen();
    Pipe output = makePipe();
    ProcessStart how;
    how.program = programs.program;
    how.environment = QStringList{"QT_QPA_PLATFORM=xcb", "QT_PLUGIN_PATH=" + programs.plugins,
                                  "QT_QPA_GENERIC_PLUGINS=vesprel-driver",
                                  "VESPREL_DRIVER_SOCKET=" + m_folder + "/run/driver",
                                  "Q_VESPREL_PORTAL=" + request.box.portal};
    if (request.acceptInsecureCerts)
        how.environment += "VESPREL_DRIVER_INSECURE=1";
    Profile variables = profile;
    // The box fills its screen, which is of the model's size unless the session has said otherwise.
    variables.remove(Environment::window);
    for (auto row = request.box.environment.begin(); row != request.box.environment.end(); ++row)
        variables[row.key()] = row.value();
    for (auto row = variables.begin(); row != variables.end(); ++row)
        how.environment += row.key() + '=' + row.value();
    how.output = output.write.number();
    confine(how, m_folder);
    startChild(m_program, how, nullptr);
    m_programOutput = std::move(output.read);
}

void Box::startCompositor()
{
    // Shows the video through the transparent parts of a page; without it they are black. Nobody
    // waits for it.
    ProcessStart how;
    how.program = "picom";
    how.arguments = QStringList{"--backend", "xrender", "--config", "/dev/null"};
    how.environment = environment();
    how.group = m_group;
    m_compositor.start(how);
}

void Box::waitForProgram()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const bool inTime =
        m_changed.wait_for(lock, startTime, [this] { return m_ready || m_gone.load(); });
    lock.unlock();
    if (!inTime || m_gone)
        fail("session not created",
             "The program did not start. Its last words:\n" + m_records.lastLines(20));
}

void Box::stop()
{
    giveUp();
    m_display.reset();
    // The keeper ends the processes when it sees the pipe closed; here they are only buried.
    m_keeperPipe.reset();
    for (Process *process : {&m_program, &m_receiver, &m_compositor, &m_xvfb})
        process->waitForEnd(5s);
    m_keeper.waitForEnd(10s);
    m_wake.write.reset();
    if (m_watcher.joinable())
        m_watcher.join();
}
