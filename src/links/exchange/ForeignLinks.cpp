#include "links/exchange/ForeignLinks.h"

#include "base/AddressSchemes.h"
#include "base/Text.h"
#include "links/BookmarkMaintenance.h"
#include "links/LinkDetection.h"
#include "links/LinkTree.h"
#include "platform/FileBookmarks.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr std::array unusableSchemes = {
    // Mean something inside of one browser only.
    "about"_L1,         "blob"_L1,          "brave"_L1,
    "browser"_L1,       "chrome"_L1,        "chrome-extension"_L1,
    "chrome-search"_L1, "edge"_L1,          "extension"_L1,
    "filesystem"_L1,    "moz-extension"_L1, "opera"_L1,
    "place"_L1,         "resource"_L1,      "safari-web-extension"_L1,
    "view-source"_L1,   "vivaldi"_L1};

bool isIgnorable(QChar c)
{
    return c.isSpace() || c.category() == QChar::Other_Control || c.category() == QChar::Other_Format;
}

/// Lower case, without what could hide it from the eye.
QString schemeOf(const QString &address)
{
    QString scheme;
    for (const QChar c : address) {
        if (isIgnorable(c))
            continue;
        if (c == u':')
            return scheme;
        const bool fits = c.unicode() < 128 && (c.isLetterOrNumber() || c == u'+' || c == u'-' || c == u'.');
        if (!fits)
            break;
        scheme += c.toLower();
    }
    return {};
}

/// What a bookmark file cannot mean: a place relative to the page it was on.
bool isRelative(const QString &address)
{
    return QStringLiteral("/#?.").contains(address.front());
}

/// Two slashes at the beginning would be a host's name where the path becomes
/// an address; here they mean no more than one.
QString withOneSlash(QString path)
{
    while (path.startsWith(u"//"))
        path.remove(0, 1);
    return path;
}

std::optional<QString> localPath(const QString &address)
{
    if (schemeOf(address) != u"file")
        return std::nullopt;
    const QUrl url(address, QUrl::TolerantMode);
    const bool here = url.host().isEmpty() || url.host() == u"localhost";
    // A zero byte would end the path early for everybody who opens it.
    if (!url.isValid() || !here || !url.path().startsWith(u'/') || url.path(QUrl::FullyDecoded).contains(QChar(0)))
        return std::nullopt;
    return withOneSlash(url.path(QUrl::FullyDecoded));
}

/// Folds the folders of the third level of `items`: their members stand beside
/// them. How many.
qint64 foldThirdLevel(LinkList &items, int level = 1)
{
    qint64 folded = 0;
    LinkList flat;
    for (LinkItem &item : items) {
        if (item.children && level < foreignLevels)
            folded += foldThirdLevel(*item.children, level + 1);
        if (level < foreignLevels || !item.children || item.children->isEmpty()) {
            flat += item;
            continue;
        }
        flat += *item.children;
        ++folded;
    }
    items = flat;
    return folded;
}

std::optional<ForeignError> openPlainFile(const QString &path, QFile &file)
{
    // Opening a pipe would wait for its other end; this does not.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return ForeignError{ForeignError::Kind::Unreadable, QString::fromLocal8Bit(std::strerror(errno))};
    struct stat info = {};
    const bool isPlain = ::fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
    if (isPlain && file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return std::nullopt;
    ::close(descriptor);
    return ForeignError{ForeignError::Kind::NotAFile, {}};
}

LinkList looseLinksTogether(const LinkList &items, LinkItem group)
{
    LinkList result;
    qsizetype place = -1;
    for (const LinkItem &item : items) {
        if (item.isGroup()) {
            result += item;
            continue;
        }
        if (place < 0)
            place = result.size();
        group.children->append(item);
    }
    if (group.children->size() == 1)
        group = group.children->constFirst();
    if (place >= 0)
        result.insert(place, group);
    return result;
}

} // namespace

QString foreignErrorText(const ForeignError &error)
{
    switch (error.kind) {
    case ForeignError::Kind::Unreadable:
        return error.detail;
    case ForeignError::Kind::NotAFile:
        return text("error.importNotAFile"_text);
    case ForeignError::Kind::NotAFolder:
        return text("foreign.errorNotAFolder"_text);
    case ForeignError::Kind::NotBookmarks:
        return text("foreign.errorNotBookmarks"_text);
    case ForeignError::Kind::NoLinks:
        return text("foreign.errorNoLinks"_text);
    case ForeignError::Kind::TooLarge:
        return text("foreign.errorTooLarge"_text);
    case ForeignError::Kind::TooManyItems:
        return text("foreign.errorTooManyItems"_text);
    case ForeignError::Kind::TooDeep:
        return text("foreign.errorTooDeep"_text);
    case ForeignError::Kind::Cancelled:
        return text("foreign.errorCancelled"_text);
    }
    Q_UNREACHABLE();
}

std::optional<QString> usableAddress(const QString &address)
{
    QString kept;
    kept.reserve(address.size());
    std::copy_if(address.begin(), address.end(), std::back_inserter(kept),
                 [](QChar c) { return c.category() != QChar::Other_Control; });
    const auto begin = std::find_if_not(kept.cbegin(), kept.cend(), isIgnorable);
    const auto end = std::find_if_not(kept.crbegin(), std::make_reverse_iterator(begin), isIgnorable).base();
    kept = QString(begin, end - begin);
    const QString scheme = schemeOf(kept);
    const bool isDriveLetter = scheme.size() == 1;
    if (kept.isEmpty() || isRelative(kept) || isDriveLetter || isCodeScheme(scheme) ||
        std::find(unusableSchemes.begin(), unusableSchemes.end(), scheme) != unusableSchemes.end())
        return std::nullopt;
    return kept;
}

QString foreignName(const QString &name)
{
    QString result;
    result.reserve(name.size());
    for (const QChar c : name) {
        const bool blank = c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
        if (blank && !result.endsWith(u' ') && !result.isEmpty())
            result += u' ';
        // Decoders take a mark at the beginning for one of the byte order.
        if (!blank && c.category() != QChar::Other_Control && c != QChar::ByteOrderMark)
            result += c;
    }
    if (result.endsWith(u' '))
        result.chop(1);
    return result;
}

LinkItem foreignLink(const QString &name, const QString &address, Timestamp now)
{
    LinkType type = LinkType::Url;
    QString path = address;
    if (auto local = localPath(address)) {
        type = local->endsWith(u'/') ? LinkType::Folder : LinkType::File;
        while (local->size() > 1 && local->endsWith(u'/'))
            local->chop(1);
        path = *local;
    }
    QString shown = foreignName(name);
    if (shown.isEmpty())
        shown = foreignName(defaultName(path, type));
    return LinkItem::make(shown, path, type, now);
}

QString addressOf(const LinkItem &item)
{
    if (item.type != LinkType::File && item.type != LinkType::Folder)
        return item.path;
    QString path = withOneSlash(item.path);
    if (item.type == LinkType::Folder && !path.endsWith(u'/'))
        path += u'/';
    return QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
}

LinkItem foreignGroup(const QString &name, Timestamp now)
{
    const QString shown = foreignName(name);
    return LinkItem::make(shown.isEmpty() ? text("foreign.unnamedFolder"_text) : shown, QString(), LinkType::Group,
                          now);
}

LinkList arranged(const ForeignLinks &foreign, const QString &title, Timestamp now)
{
    if (foreign.items.size() < 2)
        return foreign.items;
    LinkItem group = foreignGroup(title, now);
    group.children = foreign.items;
    LinkList wrapped = {group};
    if (foldThirdLevel(wrapped) == 0)
        return wrapped;
    group.children->clear();
    return looseLinksTogether(foreign.items, group);
}

void settleOnDisk(LinkList &items, const FileBookmarks &bookmarks)
{
    changeItems(items, [&bookmarks](const LinkItem &item) -> std::optional<LinkItem> {
        if (!isOnDisk(item))
            return std::nullopt;
        LinkItem settled = item;
        const auto bookmark = bookmarks.create(item.path);
        settled.bookmarkData = bookmark ? std::optional(*bookmark) : std::nullopt;
        const bool looked = bookmark || !bookmark.error().notLooked;
        if (item.type == LinkType::File && looked && QFileInfo(item.path).isDir())
            settled.type = LinkType::Folder;
        return settled;
    });
}

Result<QByteArray, ForeignError> readPlainFile(const QString &path, qint64 maxBytes)
{
    QFile file;
    if (const auto error = openPlainFile(path, file))
        return *error;
    // The size is not asked for: the file may grow, or be one of /proc.
    const QByteArray bytes = file.read(maxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return ForeignError{ForeignError::Kind::Unreadable, file.errorString()};
    if (bytes.size() > maxBytes)
        return ForeignError{ForeignError::Kind::TooLarge, {}};
    return bytes;
}

QByteArray headOfPlainFile(const QString &path, qint64 bytes)
{
    QFile file;
    return openPlainFile(path, file) ? QByteArray() : file.read(bytes);
}

QString decodedText(const QByteArray &bytes, const QByteArray &declared)
{
    if (const auto marked = QStringConverter::encodingForData(bytes)) {
        QStringDecoder decoder(*marked);
        return decoder(bytes);
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString decoded = utf8(bytes);
    if (!utf8.hasError())
        return decoded;
    QStringDecoder other(declared.isEmpty() ? "windows-1252" : declared.constData());
    if (!other.isValid())
        other = QStringDecoder(QStringDecoder::Latin1);
    // Wide characters without their mark cannot hold a declaration that is readable as bytes.
    const QByteArray name = other.name();
    if (name.startsWith("UTF-16") || name.startsWith("UTF-32"))
        return decoded;
    return other(bytes);
}

} // namespace orvelle
