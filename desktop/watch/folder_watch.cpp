// SPDX-License-Identifier: Apache-2.0
#include "desktop/watch/folder_watch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

constexpr int settleMs = 60; ///< Editors write, rename and set times; build tools write many files.
constexpr int missingMs = 200;
constexpr int mostFolders = 2000; ///< A portal has fewer; a home has more.

constexpr unsigned int watchedChanges = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_CREATE |
                                        IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

bool isIgnored(const QString &name)
{
    return name.startsWith('.') || name.startsWith('#') || name.endsWith('~') ||
           name == "node_modules" || name == "4913"; // The last one vim makes to try a folder.
}

} // namespace

FolderWatch::FolderWatch(QObject *parent)
    : QObject(parent)
    , m_inotify(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(settleMs);
    connect(&m_settle, &QTimer::timeout, this, [this] { emit changed(m_changed); });
    m_missing.setInterval(missingMs);
    connect(&m_missing, &QTimer::timeout, this, &FolderWatch::lookForFolder);
}

FolderWatch::~FolderWatch()
{
    m_notifier.reset();
    if (m_inotify >= 0)
        ::close(m_inotify);
}

QString FolderWatch::start(const QString &folder)
{
    m_folder = QDir::cleanPath(QDir(folder).absolutePath());
    if (m_inotify < 0)
        return QString("Cannot watch %1: %2.").arg(m_folder, std::strerror(errno));
    if (!QFileInfo(m_folder).isDir())
        return QString("There is no folder %1 to watch.").arg(m_folder);
    m_notifier = std::make_unique<QSocketNotifier>(m_inotify, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &FolderWatch::readSome);
    return addTree(m_folder);
}

QString FolderWatch::addTree(const QString &folder)
{
    QStringList waiting = {folder};
    QSet<QString> seen;
    while (!waiting.isEmpty()) {
        const QString path = waiting.takeFirst();
        const QString canonical = QFileInfo(path).canonicalFilePath();
        // Links may lead in circles.
        if (canonical.isEmpty() || seen.contains(canonical))
            continue;
        seen.insert(canonical);
        if (m_folders.size() >= mostFolders)
            return QString("Only %1 folders below %2 are watched.").arg(mostFolders).arg(m_folder);
        const int number =
            ::inotify_add_watch(m_inotify, QFile::encodeName(path).constData(), watchedChanges);
        if (number < 0)
            return QString("Cannot watch %1: %2.").arg(path, std::strerror(errno));
        m_folders.insert(number, path);
        const QStringList names = QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString &name : names) {
            if (!isIgnored(name))
                waiting.append(path + '/' + name);
        }
    }
    return QString();
}

void FolderWatch::readSome()
{
    alignas(inotify_event) std::array<char, 16384> bytes{};
    const ssize_t count = ::read(m_inotify, bytes.data(), bytes.size());
    for (ssize_t position = 0; position + ssize_t(sizeof(inotify_event)) <= count;) {
        inotify_event event{};
        std::memcpy(&event, bytes.data() + position, sizeof event);
        const char *name = bytes.data() + position + sizeof event;
        take(event.wd, event.mask, event.len > 0 ? QFile::decodeName(name) : QString());
        position += ssize_t(sizeof event) + event.len;
    }
}

void FolderWatch::take(int descriptor, unsigned int mask, const QString &name)
{
    const QString folder = m_folders.value(descriptor);
    if (mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF)) {
        m_folders.remove(descriptor);
        if (!(mask & IN_IGNORED))
            ::inotify_rm_watch(m_inotify, descriptor);
        // A build tool may make its folder anew at any time.
        if (folder == m_folder)
            m_missing.start();
        return;
    }
    if (!(mask & IN_Q_OVERFLOW) && (folder.isEmpty() || isIgnored(name)))
        return;
    const QString path = folder + '/' + name;
    if (mask & IN_ISDIR && mask & (IN_CREATE | IN_MOVED_TO))
        addTree(path);
    // A file that was only made has nothing in it yet, and is closed in a moment.
    else if (mask & IN_CREATE && !QFileInfo(path).isSymLink())
        return;
    m_changed = QDir(m_folder).relativeFilePath(path);
    m_settle.start();
}

void FolderWatch::lookForFolder()
{
    if (!QFileInfo(m_folder).isDir())
        return;
    m_missing.stop();
    addTree(m_folder);
    m_changed = QFileInfo(m_folder).fileName();
    m_settle.start();
}
