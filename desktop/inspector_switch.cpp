// SPDX-License-Identifier: Apache-2.0
/*
 * Switches the engine's remote inspector on in a program that has no switch for it: loaded into
 * the program as a generic plugin of Qt by QT_QPA_GENERIC_PLUGINS=vesprel-inspector, with the port
 * in VESPREL_INSPECTOR_PORT. Every page of the program is then offered to a browser at that port
 * of this machine, and of this machine only.
 */

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QGenericPlugin>
#include <QWebPage>
#include <QWebView>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/** Whether this is a TCP socket that listens on the port. */
bool listensOn(int descriptor, int port)
{
    int listens = 0;
    socklen_t size = sizeof listens;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listens, &size) != 0 || !listens)
        return false;
    sockaddr_storage address{};
    size = sizeof address;
    if (::getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size) != 0)
        return false;
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6 &>(address).sin6_port) == port;
    return address.ss_family == AF_INET &&
           ntohs(reinterpret_cast<const sockaddr_in &>(address).sin_port) == port;
}

/**
 * Puts a socket of this machine only in the place of the engine's, which is open to all networks.
 * The engine knows its socket by the descriptor's number, and that stays.
 */
void replaceSocket(int descriptor, int port)
{
    const int local = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int yes = 1;
    ::setsockopt(local, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    // This closes the engine's, and with it whoever came in between.
    ::dup3(local, descriptor, O_CLOEXEC);
    ::close(local);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(uint16_t(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        ::listen(descriptor, 16) != 0)
        qWarning("The inspector's port %d cannot be used", port);
}

void closeToNetworks(int port)
{
    const QStringList entries = QDir("/proc/self/fd").entryList(QDir::Files | QDir::System);
    for (const QString &entry : entries) {
        const int descriptor = entry.toInt();
        if (listensOn(descriptor, port))
            replaceSocket(descriptor, port);
    }
}

/** Gives the port to the page of each view that is shown. */
class PageWatcher : public QObject
{
public:
    explicit PageWatcher(int port)
        : QObject(qApp)
        , m_port(port)
    {
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *view =
            event->type() == QEvent::Show ? qobject_cast<QWebView *>(object) : nullptr;
        if (view) {
            // With the first page the engine listens, before this returns.
            view->page()->setProperty("_q_webInspectorServerPort", m_port);
            if (!m_listening)
                closeToNetworks(m_port);
            m_listening = true;
        }
        return false;
    }

private:
    int m_port;
    bool m_listening = false;
};

} // namespace

class InspectorPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "inspector_switch.json")

public:
    QObject *create(const QString &, const QString &) override
    {
        const int port = qEnvironmentVariableIntValue("VESPREL_INSPECTOR_PORT");
        // Programs that this one starts have no inspector.
        qunsetenv("QT_QPA_GENERIC_PLUGINS");
        qunsetenv("QT_PLUGIN_PATH");
        if (port <= 0)
            return nullptr;
        auto *watcher = new PageWatcher(port);
        qApp->installEventFilter(watcher);
        return watcher;
    }
};

#include "inspector_switch.moc"
