// SPDX-License-Identifier: Apache-2.0
/*
 * Switches the engine's remote inspector on in a program that has no switch for it: loaded into
 * the program with LD_PRELOAD, with the port in VESPREL_INSPECTOR_PORT. Every page of the program
 * is then offered to a browser at that port of this machine, and of this machine only.
 */

#include <QCoreApplication>
#include <QEvent>
#include <QWebPage>
#include <QWebView>

#include <cstdlib>
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace {

int inspectorPort()
{
    static const int port = qEnvironmentVariableIntValue("VESPREL_INSPECTOR_PORT");
    return port;
}

/** Gives the port to the page of each view that is shown. */
class PageWatcher : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *view =
            event->type() == QEvent::Show ? qobject_cast<QWebView *>(object) : nullptr;
        if (view)
            view->page()->setProperty("_q_webInspectorServerPort", inspectorPort());
        return false;
    }
};

void watchPages()
{
    // Programs that this one starts have no inspector.
    ::unsetenv("LD_PRELOAD");
    if (inspectorPort() > 0)
        qApp->installEventFilter(new PageWatcher(qApp));
}

/** The address of this machine only that stands for any of its addresses. */
sockaddr_in6 onThisMachine(sockaddr_in6 address)
{
    // 127.0.0.1 as a socket for both kinds of addresses writes it.
    address.sin6_addr = {};
    address.sin6_addr.s6_addr[10] = 0xff;
    address.sin6_addr.s6_addr[11] = 0xff;
    address.sin6_addr.s6_addr[12] = 127;
    address.sin6_addr.s6_addr[15] = 1;
    return address;
}

sockaddr_in onThisMachine(sockaddr_in address)
{
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int systemBind(int descriptor, const sockaddr *address, socklen_t length)
{
    using Bind = int (*)(int, const sockaddr *, socklen_t);
    static const auto next = reinterpret_cast<Bind>(::dlsym(RTLD_NEXT, "bind"));
    return next(descriptor, address, length);
}

template <typename Address>
int bindLocally(int descriptor, const sockaddr *address)
{
    const Address local = onThisMachine(*reinterpret_cast<const Address *>(address));
    return systemBind(descriptor, reinterpret_cast<const sockaddr *>(&local), sizeof local);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watchPages)

/** The system's bind, except that the engine's inspector is bound to this machine. */
extern "C" int bind(int descriptor, const sockaddr *address, socklen_t length) noexcept
{
    const int family = address && inspectorPort() > 0 ? address->sa_family : AF_UNSPEC;
    if (family == AF_INET6 &&
        ntohs(reinterpret_cast<const sockaddr_in6 *>(address)->sin6_port) == inspectorPort())
        return bindLocally<sockaddr_in6>(descriptor, address);
    if (family == AF_INET &&
        ntohs(reinterpret_cast<const sockaddr_in *>(address)->sin_port) == inspectorPort())
        return bindLocally<sockaddr_in>(descriptor, address);
    return systemBind(descriptor, address, length);
}
