#include "links/LinkItem.h"

#include "base/Uuid.h"

#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

// In the order of LinkType.
constexpr std::array rawValues = {"file"_L1, "folder"_L1, "url"_L1, "group"_L1, "note"_L1};

constexpr std::array networkSchemes = {"smb://"_L1, "afp://"_L1, "nfs://"_L1, "vnc://"_L1};

} // namespace

// Defaulted here and not in the class: a list of items compares only once an
// item does, and an item holds such a list.
bool operator==(const LinkItem &, const LinkItem &) = default;

QString rawValue(LinkType type)
{
    return rawValues.at(static_cast<std::size_t>(type));
}

std::optional<LinkType> linkTypeFromRawValue(QAnyStringView raw)
{
    for (std::size_t i = 0; i < rawValues.size(); ++i) {
        if (raw == rawValues[i])
            return static_cast<LinkType>(i);
    }
    return std::nullopt;
}

LinkItem LinkItem::make(const QString &name, const QString &path, LinkType type, Timestamp now)
{
    LinkItem item;
    item.id = QUuid::createUuid();
    item.name = name;
    item.path = path;
    item.type = type;
    if (type == LinkType::Group)
        item.children.emplace();
    item.stableId = newUuidText();
    item.createdAt = now;
    item.modifiedAt = now;
    return item;
}

bool LinkItem::isNetworkLink() const
{
    if (type != LinkType::Url)
        return false;
    const QString scheme = path.left(6).toLower();
    return std::any_of(networkSchemes.begin(), networkSchemes.end(), [&](QLatin1StringView s) { return scheme == s; });
}

bool LinkItem::isBroken() const
{
    return (type == LinkType::File || type == LinkType::Folder) && !QFileInfo::exists(path);
}

QString LinkItem::sfSymbolName() const
{
    switch (type) {
    case LinkType::File:
        return u"doc"_s;
    case LinkType::Folder:
        return u"folder"_s;
    case LinkType::Url:
        return isNetworkLink() ? customIconName.value_or(u"externaldrive.connected.to.line.below.fill"_s) : u"globe"_s;
    case LinkType::Group:
        return customIconName.value_or(u"folder.fill"_s);
    case LinkType::Note:
        return customIconName.value_or(defaultNoteIcon());
    }
    Q_UNREACHABLE();
}

bool LinkItem::coloredInMenu() const
{
    return noteColoredInMenu.value_or(type == LinkType::Note);
}

} // namespace orvelle
