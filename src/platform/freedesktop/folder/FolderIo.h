#pragma once

#include "platform/CloudContainer.h"
#include "platform/freedesktop/SerialWorker.h"

#include <sys/types.h>

#include <utility>

struct stat;

namespace orvelle {

/// A file descriptor that closes itself.
class Descriptor
{
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor();
    Descriptor(Descriptor &&other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    explicit operator bool() const { return m_fd >= 0; }
    int get() const { return m_fd; }

private:
    int m_fd;
};

/// By what a changed file is told from the one seen before, without reading it.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    qint64 size = 0;
    qint64 modifiedNs = 0; ///< since 1970, by the file system's clock

    Timestamp modifiedAt() const { return Timestamp::fromUnixSeconds(static_cast<double>(modifiedNs) / 1e9); }
    friend bool operator==(const FileStamp &, const FileStamp &) = default;
};
FileStamp stampOf(const struct stat &info);
/// Of whatever has that name; links are not followed.
std::optional<FileStamp> stampAt(int folder, const QByteArray &name);

/// A file's content and the stamp that it had throughout the reading.
struct WholeFile {
    CloudFile file;
    FileStamp stamp;
};

/// What an errno means to the user. `what` failed, in a few words.
CloudError folderError(int error, const char *what);

/// The version of a file with this content.
QByteArray versionOf(const QByteArray &bytes);

/// A name that stays in its folder.
bool isPlainName(const QString &name);

/// The content exists elsewhere only: a sync client's stand-in for the file.
bool isPlaceholder(int file);
/// The names under which sync clients put a stand-in beside where the file would be.
QStringList placeholderNames(const QString &name);

/// The regular file of that name, never in a state between two: while it
/// changes or a process of this machine has it open for writing, it is read
/// again, for some seconds. Links are not followed, nothing but a regular file
/// is opened. NoData for an empty file and a placeholder.
Result<WholeFile, CloudError> readWhole(int folder, const QByteArray &name, WorkerTime &time);

/// 0 or an errno.
int writeAll(int file, QByteArrayView bytes);
/// Renames within a file system, or gives EEXIST; also where the file system
/// has no such operation. 0 or an errno.
int renameNew(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to);
/// All names in the folder.
QStringList namesIn(int folder);

} // namespace orvelle
