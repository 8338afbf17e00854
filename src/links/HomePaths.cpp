#include "links/HomePaths.h"

#include "links/LinkTree.h"
#include "platform/Volumes.h"

#include <QUrl>

namespace orvelle {

namespace {

LinkList withPaths(LinkList links, const std::function<QString(const QString &)> &convert)
{
    changeItems(links, [&](const LinkItem &old) -> std::optional<LinkItem> {
        const QString path = convert(old.path);
        if (path == old.path)
            return std::nullopt;
        LinkItem item = old;
        item.path = path;
        return item;
    });
    return links;
}

} // namespace

LinkList makePortable(const LinkList &links, const QString &home)
{
    return withPaths(links, [&home](const QString &path) {
        const bool inHome = path == home || path.startsWith(home + u'/');
        return inHome ? u'~' + path.mid(home.size()) : path;
    });
}

LinkList resolveHomePaths(const LinkList &links, const QString &home)
{
    return withPaths(links, [&home](const QString &path) { return expandedHomePath(path, home); });
}

QString expandedHomePath(const QString &path, const QString &home)
{
    const bool inHome = path == u'~' || path.startsWith(QLatin1StringView("~/"));
    return inHome ? home + path.mid(1) : path;
}

std::optional<QString> networkURL(const QString &path, const Volumes &volumes)
{
    const auto volume = volumes.remoteVolumeHolding(path);
    if (!volume)
        return std::nullopt;
    const QString rest = volume->mountPoint == u'/' ? path : path.mid(volume->mountPoint.size());
    return volume->remountAddress + QString::fromLatin1(QUrl::toPercentEncoding(rest, "!$&'()*+,/:=@"));
}

} // namespace orvelle
