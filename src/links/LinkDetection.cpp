#include "links/LinkDetection.h"

#include "links/HomePaths.h"
#include "platform/Volumes.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr std::array addressPrefixes = {"http://"_L1, "https://"_L1, "ftp://"_L1,
                                        "ftps://"_L1, "mailto:"_L1,  "tel:"_L1};

constexpr std::array acceptedSchemes = {"http"_L1, "https"_L1, "ftp"_L1, "ftps"_L1, "mailto"_L1, "tel"_L1,
                                        "file"_L1, "smb"_L1,   "afp"_L1, "nfs"_L1,  "vnc"_L1};

bool looksLikePath(const QString &text)
{
    return text.startsWith(u'/') || text.startsWith(u'~');
}

} // namespace

LinkType detectedType(const QString &text, const Volumes &volumes)
{
    const auto begins = [&text](QLatin1StringView prefix) { return text.startsWith(prefix); };
    if (std::any_of(addressPrefixes.begin(), addressPrefixes.end(), begins) || !looksLikePath(text))
        return LinkType::Url;
    const QString path = expandedHomePath(text, volumes.realHomeDirectory());
    const bool isDistant = !volumes.distantVolumeHolding(path).isEmpty();
    const bool isFolder = isDistant ? path.endsWith(u'/') : QFileInfo(path).isDir();
    return isFolder ? LinkType::Folder : LinkType::File;
}

bool mayExist(const QString &text, const Volumes &volumes)
{
    if (!looksLikePath(text))
        return true;
    const QString path = expandedHomePath(text, volumes.realHomeDirectory());
    return !volumes.distantVolumeHolding(path).isEmpty() || QFileInfo::exists(path);
}

bool isValidLink(const QString &text)
{
    if (looksLikePath(text))
        return true;
    const QUrl url(text, QUrl::TolerantMode);
    const QString scheme = url.scheme();
    return url.isValid() && std::find(acceptedSchemes.begin(), acceptedSchemes.end(), scheme) != acceptedSchemes.end();
}

QString detectedIconName(LinkType type)
{
    switch (type) {
    case LinkType::File:
        return u"doc.fill"_s;
    case LinkType::Folder:
        return u"folder.fill"_s;
    case LinkType::Url:
        return u"globe"_s;
    case LinkType::Group:
    case LinkType::Note:
        break;
    }
    return u"note.text"_s;
}

QString defaultName(const QString &textOrPath, LinkType type)
{
    if (type == LinkType::Url) {
        const QString host = QUrl(textOrPath, QUrl::TolerantMode).host();
        return host.isEmpty() ? textOrPath : host;
    }
    const QFileInfo info(QDir::cleanPath(textOrPath));
    if (info.fileName().isEmpty())
        return textOrPath;
    const QString base = info.completeBaseName();
    return base.isEmpty() ? info.fileName() : base;
}

std::optional<LinkItem> linkFromText(const QString &text, const QString &name, const Volumes &volumes, Timestamp now)
{
    if (!isValidLink(text))
        return std::nullopt;
    LinkType type = detectedType(text, volumes);
    QString path = text;
    QString chosenName = name;
    if (type != LinkType::Url) {
        path = QDir::cleanPath(expandedHomePath(text, volumes.realHomeDirectory()));
        if (chosenName.isEmpty())
            chosenName = defaultName(path, type);
        if (const auto address = networkURL(path, volumes)) {
            path = *address;
            type = LinkType::Url;
        }
    } else if (chosenName.isEmpty()) {
        chosenName = defaultName(text, type);
    }
    return LinkItem::make(chosenName, path, type, now);
}

} // namespace orvelle
