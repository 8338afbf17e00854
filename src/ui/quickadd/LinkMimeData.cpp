#include "ui/quickadd/LinkMimeData.h"

#include "links/LinkDetection.h"
#include "platform/Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// What password managers put beside a secret (with the value "secret").
constexpr auto secretHint = "x-kde-passwordManagerHint"_L1;
constexpr qsizetype longestOffer = 2000;
constexpr auto uriList = "text/uri-list"_L1;
constexpr qint64 mostBytes = 1024 * 1024;

bool isOneWord(const QString &text)
{
    return std::none_of(text.begin(), text.end(), [](QChar c) { return c.isSpace() || !c.isPrint(); });
}

using Then = std::function<void(const QMimeData &)>;

/// Reads the forms one after the other, leaving out those that fail.
void readForms(Pasteboard &pasteboard, QObject *context, QStringList forms, const std::shared_ptr<QMimeData> &read,
               const Then &then)
{
    if (forms.isEmpty())
        return then(*read);
    const QString form = forms.takeFirst();
    pasteboard.data(form, mostBytes, context, [=, &pasteboard](const Result<QByteArray, PasteboardError> &bytes) {
        if (bytes)
            read->setData(form, *bytes);
        readForms(pasteboard, context, forms, read, then);
    });
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

void readCopied(Pasteboard &pasteboard, Reading reading, QObject *context, std::function<void(const QMimeData &)> then)
{
    if (!pasteboard.servesWindows()) {
        const QMimeData *content = QGuiApplication::clipboard()->mimeData();
        const QMimeData nothing;
        return then(content ? *content : nothing);
    }
    pasteboard.types(context, [=, &pasteboard, then = std::move(then)](const auto &types) {
        const QStringList offered = types ? *types : QStringList();
        QStringList forms;
        for (const QString &form : {QString(uriList), Pasteboard::textType()}) {
            if (offered.contains(form))
                forms += form;
        }
        if (reading == Reading::Unasked && offered.contains(secretHint))
            forms.clear();
        readForms(pasteboard, context, forms, std::make_shared<QMimeData>(), then);
    });
}

} // namespace orvelle
