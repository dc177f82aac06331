// SPDX-License-Identifier: Apache-2.0
#include "api/text_file.h"

#include "platform/box_paths.h"
#include "platform/log_record.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static_assert(sizeof(off_t) >= 8, "32-bit boxes see large files and directories only with this");

namespace {

/** Opens an existing regular file, never waiting; false for anything else. */
bool openRegular(QFile &file, const QString &path, int mode)
{
    if (path.contains(QChar(0)))
        return false;
    const QByteArray name = QFile::encodeName(path);
    const int handle = ::open(name.constData(), mode | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (handle < 0)
        return false;
    struct stat status = {};
    const auto access = mode == O_RDONLY ? QIODevice::ReadOnly : QIODevice::WriteOnly;
    if (::fstat(handle, &status) == 0 && S_ISREG(status.st_mode) &&
        file.open(handle, access | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle))
        return true;
    ::close(handle);
    return false;
}

/** A file's content up to one byte more than may be used; nothing if it cannot be read. */
std::optional<QByteArray> startOfFile(const QString &path)
{
    QFile file;
    if (!openRegular(file, path, O_RDONLY))
        return std::nullopt;
    return file.read(longestText + 1);
}

struct Word
{
    QString text;
    bool reachesEnd = false;
};

Word readWord(const QByteArray &content)
{
    QTextStream stream(content);
    stream.setCodec("UTF-8");
    QString text;
    stream >> text;
    return {text, stream.atEnd()};
}

QString refusedText(const QString &path)
{
    logRecord("Not read, more than 16 MiB:", path);
    return QString();
}

/** Waits until the disk has it. Only a disk that lost it is a failure, not one that cannot tell. */
bool syncToDisk(int handle)
{
    return ::fsync(handle) == 0 || (errno != EIO && errno != ENOSPC && errno != EDQUOT);
}

/** The new name in the folder outlives a loss of power only if the folder itself is on disk. */
void syncFolderOf(const QString &path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    const int handle = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    syncToDisk(handle);
    ::close(handle);
}

/** Gives a new file owner and permissions of the one that it replaces; false if it may not. */
bool takeOver(int handle, const QString &old)
{
    struct stat before = {};
    struct stat now = {};
    if (::stat(QFile::encodeName(old).constData(), &before) != 0)
        return true;
    if (::fstat(handle, &now) != 0)
        return false;
    const bool sameOwner = before.st_uid == now.st_uid && before.st_gid == now.st_gid;
    return (sameOwner || ::fchown(handle, before.st_uid, before.st_gid) == 0) &&
           ::fchmod(handle, before.st_mode & 07777U) == 0;
}

/** Makes room for the whole content before the first byte of the old one is lost. */
Replacement writeOver(const QString &path, const QByteArray &content)
{
    QFile file;
    if (!openRegular(file, path, O_WRONLY))
        return Replacement::NotOpened;
    const qint64 before = file.size();
    if (content.size() > before &&
        ::posix_fallocate(file.handle(), before, content.size() - before) != 0) {
        file.resize(before);
        return Replacement::NotWritten;
    }
    const bool isWritten = file.write(content) == content.size() && file.resize(content.size());
    return isWritten && syncToDisk(file.handle()) ? Replacement::Done : Replacement::NotWritten;
}

} // namespace

QString diskPath(const QString &path)
{
    return path.startsWith(':') ? "./" + path : BoxPaths::mediaPath(path);
}

QString firstWord(const QByteArray &content) { return readWord(content).text; }

std::optional<QString> firstWordOfFile(const QString &path)
{
    const auto content = startOfFile(diskPath(path));
    if (!content)
        return std::nullopt;
    const Word word = readWord(*content);
    return content->size() > longestText && word.reachesEnd ? refusedText(path) : word.text;
}

std::optional<QString> textOfFile(const QString &path)
{
    const auto content = startOfFile(diskPath(path));
    if (!content)
        return std::nullopt;
    if (content->size() > longestText)
        return refusedText(path);
    // The decoder drops a byte order mark; portals get it, so that what they write back has it.
    const bool isMarked = content->startsWith("\xEF\xBB\xBF");
    const QString text = QString::fromUtf8(content->constData(), content->size());
    return isMarked ? QChar(QChar::ByteOrderMark) + text : text;
}

Replacement replaceFile(const QString &path, const QString &text)
{
    const QString name = diskPath(path);
    const QFileInfo info(name);
    if (path.contains(QChar(0)) || (info.exists() && !info.isFile()))
        return Replacement::NotOpened;
    const QByteArray content = text.toUtf8();
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || !takeOver(file.handle(), name))
        return writeOver(name, content);
    if (file.write(content) != content.size() || !file.flush() || !syncToDisk(file.handle()))
        return Replacement::NotWritten;
    if (!file.commit())
        return writeOver(name, content);
    syncFolderOf(name);
    return Replacement::Done;
}
