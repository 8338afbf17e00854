#pragma once

#include "base/Timestamp.h"
#include "links/LinkItem.h"

#include <QByteArray>
#include <QSet>
#include <QString>

#include <optional>

namespace orvelle {

struct ExportData;

/// The name of one version of the shared file: the first sixteen digits of the
/// SHA-256 of its (plain) bytes.
QString syncVersionId(const QByteArray &document);

/// The version of the shared file that the tree here grew from. By it a
/// machine can tell an item that was deleted elsewhere from one that the
/// others have not seen yet, which dates alone do not tell.
struct SyncBase {
    QString place;       ///< where the file was; another place has another past
    QString version;     ///< syncVersionId()
    QStringList history; ///< versions before it, all of them contained in the tree here; newest first
    QSet<QString> items; ///< stable ids that it held
    Timestamp since;     ///< by the clock here: later changes of items here are not in it
    QString lost;        ///< where the tree was set aside that was lost last before; see LinkStore::rescuedDataKeys()

    /// As many as a document carries. A machine that was away for longer only
    /// adds what is new to it, and deletes nothing.
    static constexpr qsizetype maxHistory = 128;

    bool contains(const QString &versionId) const { return version == versionId || history.contains(versionId); }
    /// What is stored between runs, and back; absent when it is no such thing.
    QByteArray toBytes() const;
    static std::optional<SyncBase> fromBytes(const QByteArray &bytes);
    friend bool operator==(const SyncBase &, const SyncBase &) = default;
};

/// The versions that a document names as its past; absent when it says nothing,
/// as documents of other makers.
std::optional<QStringList> documentHistory(const ExportData &document);

/// Two pasts in one, the first one's before the other's.
QStringList joinedHistory(const QStringList &first, const QStringList &second);

} // namespace orvelle
