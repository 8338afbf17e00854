#include "ui/quickadd/LinkMimeData.h"

#include "links/LinkDetection.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// What password managers put beside a secret (with the value "secret").
constexpr auto secretHint = "x-kde-passwordManagerHint"_L1;
constexpr qsizetype longestOffer = 2000;

bool isOneWord(const QString &text)
{
    return std::none_of(text.begin(), text.end(), [](QChar c) { return c.isSpace() || !c.isPrint(); });
}

} // namespace

QString linkIn(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    const auto file = std::find_if(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
    if (file != urls.end())
        return file->toLocalFile();
    // A browser's text beside an address can be the link's caption.
    if (!urls.isEmpty() && isValidLink(urls.constFirst().toString()))
        return urls.constFirst().toString(QUrl::FullyEncoded);
    return data.hasText() ? data.text().trimmed() : QString();
}

QString linkToOffer(const QMimeData &data, const Volumes &volumes)
{
    if (data.hasFormat(secretHint))
        return {};
    const QString found = linkIn(data);
    if (found.size() > longestOffer || !isValidLink(found))
        return {};
    if (detectedType(found, volumes) == LinkType::Url)
        return isOneWord(found) ? found : QString();
    return mayExist(found, volumes) ? found : QString();
}

} // namespace orvelle
