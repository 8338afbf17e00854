#pragma once

#include "base/Timestamp.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace orvelle {

/// The kinds of nodes. The raw values ("file", "folder", "url", "group",
/// "note") are part of the stored form.
enum class LinkType { File, Folder, Url, Group, Note };

QString rawValue(LinkType type);
std::optional<LinkType> linkTypeFromRawValue(QAnyStringView raw);

/// One node of the user's tree: an address, a file, a folder, a group of
/// further items, or a note. A plain value; a tree is a QList of these, and
/// copying one is cheap because lists are shared until changed.
///
/// Invariants kept by the store: only groups have `children` (an empty group
/// an empty list); `stableId` is unique in the tree.
struct LinkItem {
    QUuid id; ///< identity within one run
    QString name;
    QString path; ///< address as typed, or absolute path; empty for groups and notes
    LinkType type = LinkType::Url;
    std::optional<QList<LinkItem>> children;
    std::optional<QByteArray> bookmarkData;
    std::optional<QString> customIconName;
    std::optional<QString> customIconColor; ///< a key of allColors()
    std::optional<QByteArray> faviconData;  ///< in memory only
    QString stableId;                       ///< identity across machines: upper-case UUID text
    std::optional<Timestamp> createdAt;
    std::optional<Timestamp> modifiedAt;
    std::optional<QString> noteContent;
    std::optional<QByteArray> noteRTFData;
    std::optional<bool> noteColoredInMenu;
    std::optional<Timestamp> contentModifiedAt;

    /// Memberwise over all sixteen fields.
    friend bool operator==(const LinkItem &, const LinkItem &);

    /// The symbol of a note without one of its own.
    static QString defaultNoteIcon() { return QStringLiteral("note.text"); }

    /// A new item: random identities, created and modified `now`. A group
    /// has no children yet, but a list for them.
    static LinkItem make(const QString &name, const QString &path, LinkType type, Timestamp now);

    bool isGroup() const { return type == LinkType::Group; }
    /// A `url` item whose address begins, in any case, with "smb://",
    /// "afp://", "nfs://" or "vnc://".
    bool isNetworkLink() const;
    /// A file or folder that does not exist.
    bool isBroken() const;
    /// The symbol drawn when the item has no picture of its own.
    QString sfSymbolName() const;
    /// Whether the menu draws the item in its colour: the flag, else true for
    /// notes only.
    bool coloredInMenu() const;
};

using LinkList = QList<LinkItem>;

} // namespace orvelle
