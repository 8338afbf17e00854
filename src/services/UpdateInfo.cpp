#include "services/UpdateInfo.h"

#include "base/JsonReader.h"

#include <algorithm>

namespace orvelle {

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// Takes the run of digits that `text` begins with off it, without zeros in front.
QStringView takeNumber(QStringView &text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    QStringView digits = text.first(end - text.begin());
    text = text.sliced(digits.size());
    while (digits.startsWith(u'0'))
        digits = digits.sliced(1);
    return digits;
}

int compareNumbers(QStringView left, QStringView right)
{
    return left.size() != right.size() ? (left.size() < right.size() ? -1 : 1) : left.compare(right);
}

/// A text that can stand in a message.
std::optional<QString> shownText(const std::optional<JsonValue> &value)
{
    const auto text = jsonText(value);
    const bool fits = text && text->size() <= UpdateInfo::maxTextLength &&
                      std::all_of(text->begin(), text->end(), [](QChar c) { return c.isPrint(); });
    return fits ? text : std::nullopt;
}

bool isPage(const QUrl &url)
{
    return url.isValid() && url.scheme() == u"https" && !url.host().isEmpty() && url.userInfo().isEmpty();
}

} // namespace

std::optional<UpdateInfo> decodeUpdateInfo(const QByteArray &manifest)
{
    if (manifest.size() > UpdateInfo::maxManifestBytes)
        return std::nullopt;
    const auto document = JsonDocument::parse(manifest);
    if (!document || !document->root().isObject())
        return std::nullopt;
    const JsonValue root = document->root();
    const auto version = shownText(root.member("version"));
    const auto build = shownText(root.member("build"));
    const auto address = jsonText(root.member("url"));
    const auto date = root.member("releaseDate");
    if (!version || !build || !address || (date && !shownText(date)))
        return std::nullopt;
    const QUrl page(*address, QUrl::StrictMode);
    if (!isPage(page))
        return std::nullopt;
    return UpdateInfo{*version, *build, page, shownText(date)};
}

int compareVersions(QStringView left, QStringView right)
{
    while (!left.isEmpty() && !right.isEmpty()) {
        int order = 0;
        if (isDigit(left.front()) && isDigit(right.front())) {
            const QStringView number = takeNumber(left);
            order = compareNumbers(number, takeNumber(right));
        } else {
            order = left.front().unicode() - right.front().unicode();
            left = left.sliced(1);
            right = right.sliced(1);
        }
        if (order != 0)
            return order;
    }
    return static_cast<int>(!left.isEmpty()) - static_cast<int>(!right.isEmpty());
}

} // namespace orvelle
