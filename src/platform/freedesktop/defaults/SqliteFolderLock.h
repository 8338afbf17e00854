#pragma once

#include <QByteArray>

#include <chrono>

namespace orvelle {

/// Keeps other processes from opening the settings at the same time, so that
/// one of two does not move aside what the other has just made. Released by
/// the kernel should the process die.
class SqliteFolderLock
{
public:
    SqliteFolderLock(const QByteArray &folder, std::chrono::milliseconds longestWait);
    ~SqliteFolderLock();
    SqliteFolderLock(const SqliteFolderLock &) = delete;
    SqliteFolderLock &operator=(const SqliteFolderLock &) = delete;

    /// 0, or why the folder cannot be opened (an errno), or EWOULDBLOCK after
    /// the longest wait. A file system without locks counts as locked.
    int acquire() const;

    /// Makes created and renamed files durable.
    void sync() const;

private:
    int m_folder;
    int m_openError;
    std::chrono::milliseconds m_longestWait;
};

} // namespace orvelle
