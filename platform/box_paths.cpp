// SPDX-License-Identifier: Apache-2.0
#include "platform/box_paths.h"

#include <QFile>
#include <QStandardPaths>

#include <unistd.h>

namespace {

const char receiverSocketPath[] = "/home/.sock.vesprel";

#ifdef VESPREL_DESKTOP
// sun_path holds 108 bytes with its terminator.
constexpr int longestSocketPath = 107;

QString initialRoot()
{
    if (qEnvironmentVariableIsSet("VESPREL_ROOT"))
        return qEnvironmentVariable("VESPREL_ROOT");
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString root = dataHome + "/vesprel/box";
    if (QFile::encodeName(root + receiverSocketPath).size() <= longestSocketPath)
        return root;
    return QString("/tmp/vesprel-%1").arg(getuid());
}
#else
QString initialRoot() { return QString(); }
#endif

QString &rootStorage()
{
    static QString root = initialRoot();
    return root;
}

QString below(const QString &path) { return rootStorage() + path; }

} // namespace

QString BoxPaths::root() { return rootStorage(); }

void BoxPaths::setRoot(const QString &root) { rootStorage() = root; }

QString BoxPaths::mediaPath(const QString &path)
{
    return path == "/media" || path.startsWith("/media/") ? below(path) : path;
}

QString BoxPaths::receiverSocket() { return below(receiverSocketPath); }

QString BoxPaths::applicationHome() { return below("/home/vesprel/"); }

QString BoxPaths::keyboardPageUrl()
{
    return "file:///" + below("/usr/share/vesprel/web/system/keyboard/index.html");
}

QString BoxPaths::servicesPageUrl() { return "file://" + below("/home/web/services.html"); }

QString BoxPaths::localPagesUrl() { return "file:///home/web"; }

QString BoxPaths::actionScript() { return below("/home/default/action.sh"); }

QString BoxPaths::decoderFile(const QString &name) { return below("/proc/stb/vmpeg/0/" + name); }

QString BoxPaths::parameterFile() { return below("/etc/stb_params"); }

QStringList BoxPaths::serialNumberFiles()
{
    return {below("/proc/stb/info/sn"), below("/proc/device-tree/serial-number"),
            below("/sys/firmware/devicetree/base/serial-number")};
}

QString BoxPaths::processorInfoFile() { return below("/proc/cpuinfo"); }
