#include "widgets/clipboard/ClipboardReading.h"

#include "widgets/clipboard/ClipboardCache.h"
#include "widgets/clipboard/ClipboardEntries.h"
#include "widgets/clipboard/ClipboardImages.h"
#include "widgets/clipboard/ClipboardLog.h"
#include "widgets/clipboard/ClipboardTypes.h"
#include "widgets/clipboard/ClipboardWork.h"

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maxListBytes = 1024 * 1024;

/// Gives `type` when it is offered, else an empty text.
QString ifOffered(const QStringList &offered, const QString &type)
{
    return offered.contains(type) ? type : QString();
}

} // namespace

const QList<ClipboardReading::Rule> &ClipboardReading::rules()
{
    static const QList<Rule> list{
        {[](const QStringList &offered) { return ifOffered(offered, ClipboardTypes::rtfd()); },
         &ClipboardReading::takeRtfd, maxOtherBytes},
        {&offeredRtf, &ClipboardReading::takeRtf, maxOtherBytes},
        {&offeredImage, &ClipboardReading::takeImage, maxImageBytes},
        {[](const QStringList &offered) { return ifOffered(offered, Pasteboard::textType()); },
         &ClipboardReading::takeText, maxOtherBytes},
        {[](const QStringList &offered) { return ifOffered(offered, ClipboardTypes::browserLink()); },
         &ClipboardReading::takeLink, maxListBytes},
        {[](const QStringList &offered) { return ifOffered(offered, ClipboardTypes::uriList()); },
         &ClipboardReading::takeLink, maxListBytes},
        {[](const QStringList &offered) { return ifOffered(offered, ClipboardTypes::pdf()); },
         &ClipboardReading::takePdf, maxOtherBytes},
    };
    return list;
}

ClipboardReading::ClipboardReading(const Services &services) : m_services(services) {}

void ClipboardReading::start()
{
    m_services.pasteboard.types(this, [this](const Result<QStringList, PasteboardError> &types) {
        if (types) {
            gotTypes(*types);
            return;
        }
        if (types.error().kind == PasteboardError::Kind::TimedOut)
            qCInfo(lcClipboard, "The owner of the clipboard does not answer");
        end();
    });
}

void ClipboardReading::gotTypes(const QStringList &types)
{
    m_types = types;
    if (isMarkedSecret(types)) {
        qCInfo(lcClipboard, "A copy that is marked as secret was passed over");
        end();
    } else if (types.isEmpty()) {
        end();
    } else if (types.contains(ownEntryType())) {
        askOwn();
    } else {
        askFiles();
    }
}

void ClipboardReading::askOwn()
{
    m_services.pasteboard.data(ownEntryType(), maxListBytes, this, [this](const Bytes &id) {
        if (id)
            emit foundOwn(QString::fromUtf8(*id));
        else
            end();
    });
}

/// A file manager gives the paths as text too. What it means is the files, so
/// they are asked for first.
void ClipboardReading::askFiles()
{
    const QStringList lists{ClipboardTypes::uriList(), ClipboardTypes::copiedFiles()};
    const auto list = std::ranges::find_if(lists, [this](const QString &each) { return m_types.contains(each); });
    if (list == lists.end()) {
        tryRule(0);
        return;
    }
    m_services.pasteboard.data(*list, maxListBytes, this, [this](const Bytes &bytes) {
        m_files = bytes ? fileUrls(*bytes) : QList<QUrl>();
        if (!bytes && bytes.error().kind == PasteboardError::Kind::TimedOut)
            failed(0, bytes.error());
        else
            tryRule(0);
    });
}

bool ClipboardReading::skips(const Rule &rule) const
{
    const bool isText = rule.take == &ClipboardReading::takeText || rule.take == &ClipboardReading::takeLink;
    return isText && !m_files.isEmpty();
}

void ClipboardReading::tryRule(qsizetype number)
{
    for (; number < rules().size(); ++number) {
        const Rule &rule = rules().at(number);
        const QString type = skips(rule) ? QString() : rule.type(m_types);
        if (type.isEmpty())
            continue;
        m_rule = number;
        m_services.pasteboard.data(type, rule.maxBytes, this, [this, number, type](const Bytes &bytes) {
            if (!bytes)
                failed(number, bytes.error());
            else if (bytes->isEmpty())
                tryRule(number + 1);
            else
                (this->*rules().at(number).take)(type, *bytes);
        });
        return;
    }
    rest();
}

void ClipboardReading::failed(qsizetype number, const PasteboardError &error)
{
    const bool isImage = rules().at(number).take == &ClipboardReading::takeImage;
    if (error.kind == PasteboardError::Kind::TimedOut) {
        qCInfo(lcClipboard, "The owner of the clipboard does not answer");
        end();
    } else if (isImage && error.kind == PasteboardError::Kind::TooLarge) {
        qCWarning(lcClipboard, "Skipping clipboard image: %ld bytes exceeds limit", long(error.bytes));
        end();
    } else {
        // Formatted text that is too large may be there as text.
        tryRule(number + 1);
    }
}

void ClipboardReading::takeRtfd(const QString &, const QByteArray &bytes)
{
    find([bytes] { return rtfdEntry(bytes); });
}

/// Programs that take no formatting need the text as its owner has it.
void ClipboardReading::takeRtf(const QString &, const QByteArray &bytes)
{
    if (!m_types.contains(Pasteboard::textType())) {
        makeRtf(bytes, {});
        return;
    }
    m_services.pasteboard.data(Pasteboard::textType(), maxOtherBytes, this, [this, bytes](const Bytes &plain) {
        makeRtf(bytes, plain ? QString::fromUtf8(*plain) : QString());
    });
}

void ClipboardReading::makeRtf(const QByteArray &bytes, const QString &plain)
{
    find([bytes, plain, preview = m_services.richPreview] { return rtfEntry(bytes, preview(bytes), plain); });
}

void ClipboardReading::takeImage(const QString &type, const QByteArray &bytes)
{
    find([bytes, type, &cache = m_services.cache] { return ClipboardImages::entryFor(bytes, type, cache); });
}

void ClipboardReading::takeText(const QString &, const QByteArray &bytes)
{
    find([bytes] { return textEntry(bytes); });
}

void ClipboardReading::takeLink(const QString &type, const QByteArray &bytes)
{
    const QString address = type == ClipboardTypes::browserLink() ? browserAddress(bytes) : firstAddress(bytes);
    if (address.isEmpty())
        tryRule(m_rule + 1);
    else
        end(linkEntry(address));
}

void ClipboardReading::takePdf(const QString &, const QByteArray &bytes)
{
    find([bytes] { return pdfEntry(bytes); });
}

void ClipboardReading::rest()
{
    const bool areFiles =
        m_types.contains(ClipboardTypes::uriList()) || m_types.contains(ClipboardTypes::copiedFiles());
    if (!m_files.isEmpty())
        end(filesEntry(m_files));
    else
        end(areFiles ? unknownFilesEntry(m_types) : otherEntry(m_types));
}

void ClipboardReading::find(std::function<std::optional<ClipboardEntry>()> job)
{
    m_services.work.find(this, std::move(job), [this](const std::optional<ClipboardEntry> &entry) { end(entry); });
}

void ClipboardReading::end(const std::optional<ClipboardEntry> &entry)
{
    emit finished(entry);
}

} // namespace orvelle
