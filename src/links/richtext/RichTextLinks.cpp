#include "links/richtext/RichTextLinks.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr std::array safeSchemes = {"http"_L1, "https"_L1, "ftp"_L1, "ftps"_L1, "sftp"_L1, "mailto"_L1,
                                    "tel"_L1,  "smb"_L1,   "afp"_L1, "nfs"_L1,  "vnc"_L1};
constexpr std::array hostlessSchemes = {"mailto"_L1, "tel"_L1};
constexpr std::array beginnings = {"http://"_L1, "https://"_L1, "www."_L1, "mailto:"_L1};

template<std::size_t size>
bool contains(const std::array<QLatin1StringView, size> &list, const QString &scheme)
{
    return std::ranges::find(list, scheme) != list.end();
}

bool isSafe(const QUrl &url)
{
    const QString scheme = url.scheme();
    if (!url.isValid() || !contains(safeSchemes, scheme))
        return false;
    return contains(hostlessSchemes, scheme) ? !url.path().isEmpty() : !url.host().isEmpty();
}

} // namespace

std::optional<QUrl> safeLink(const QString &typed)
{
    const QString text = typed.trimmed();
    if (std::ranges::any_of(text, [](QChar c) { return c.isSpace() || !c.isPrint(); }))
        return std::nullopt;
    if (const QUrl url(text, QUrl::TolerantMode); isSafe(url))
        return url;
    // What is left may lack its scheme: "example.org:8080/a", "ada@example.org".
    if (!text.contains(u'.') || text.contains(u"://"_s) || text.startsWith(u'/'))
        return std::nullopt;
    const bool isMail = text.contains(u'@') && !text.contains(u'/') && !text.contains(u':');
    const QUrl url((isMail ? u"mailto:"_s : u"https://"_s) + text, QUrl::TolerantMode);
    return isSafe(url) && url.userInfo().isEmpty() ? std::optional(url) : std::nullopt;
}

std::optional<QUrl> linkInText(const QString &word)
{
    const auto begins = [&word](QLatin1StringView beginning) {
        return word.startsWith(beginning, Qt::CaseInsensitive) && word.size() > beginning.size();
    };
    return std::ranges::any_of(beginnings, begins) ? safeLink(word) : std::nullopt;
}

} // namespace orvelle
