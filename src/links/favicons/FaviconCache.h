#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace orvelle {

/// The folder in which pictures of links lie, a file for each link, named by
/// its id and ".png" whatever the format. Private to the user. Holds nothing
/// that cannot be fetched again, so that failures are logged and no more.
///
/// Any thread, but one at a time.
class FaviconCache
{
public:
    explicit FaviconCache(QString folder) : m_folder(std::move(folder)) {}

    QString faviconFilePath(const QUuid &id) const;

    /// Absent when there is no file, or none that could be a picture.
    std::optional<QByteArray> loadFaviconFromDisk(const QUuid &id) const;
    /// Atomic; makes the folder when it is missing.
    bool writeFaviconToDisk(const QByteArray &bytes, const QUuid &id) const;
    void deleteFaviconFromDisk(const QUuid &id) const;

    using Pictures = QHash<QUuid, QByteArray>;
    /// Reads what is there for these ids and hands it on in parts of up to
    /// `batch`. Equal pictures share their bytes.
    void loadAll(const QSet<QUuid> &ids, qsizetype batch, const std::function<void(const Pictures &)> &part) const;
    /// Deletes every file that belongs to none of these ids. Gives their number.
    int removeAllBut(const QSet<QUuid> &ids) const;

private:
    QString m_folder;
};

} // namespace orvelle
