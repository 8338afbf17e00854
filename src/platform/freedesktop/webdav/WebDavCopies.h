#pragma once

#include "platform/CloudContainer.h"

#include <optional>

namespace orvelle {

/// What is known here of a version on the server.
struct WebDavCopy {
    QByteArray version;  ///< SHA-256 of the bytes, in hexadecimal
    QByteArray tag = {}; ///< strong, with its quotes; empty when the server gave none
    Timestamp modifiedAt = {};
    QByteArray bytes = {};
};

/// This machine's copies of the files of one account, in a folder that only
/// the user may read. Copies of another account are removed when the first
/// copy of this one is kept. May be used from several threads and processes:
/// each file is replaced as a whole, and a damaged one counts as none.
class WebDavCopies
{
public:
    /// `account` tells accounts apart and shows nowhere. Touches nothing.
    WebDavCopies(const QString &cacheFolder, const QString &account);

    /// Without the bytes.
    std::optional<WebDavCopy> look(const QString &name) const;
    std::optional<WebDavCopy> load(const QString &name) const;
    /// False when the disk does not take it.
    bool keep(const QString &name, const WebDavCopy &copy) const;
    bool drop(const QString &name) const;

    /// The token of a lock that we hold on the server, to be found by the next
    /// run should this one be killed.
    QByteArray lockToken(const QString &name) const;
    void keepLockToken(const QString &name, const QByteArray &token) const;

    /// For what only one process may do.
    QString guardPath() const;
    /// Eight hexadecimal digits of this machine and account.
    QString machineMark() const;

private:
    QString pathOf(const QString &name, const QString &suffix) const;
    bool makeFolder() const;
    void removeOthers() const;

    QString m_cacheFolder;
    QString m_folder;
};

} // namespace orvelle
