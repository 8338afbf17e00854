#include "links/exchange/LinkFiles.h"

#include "links/exchange/LinkExchange.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QtEndian>

#include <glib.h>
#include <plist/plist.h>

#include <algorithm>
#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// No real folder of links is nested deeper; this ends the recursion.
constexpr int maxFolderDepth = 64;

template<auto release>
struct Releaser {
    template<typename T>
    void operator()(T *object) const
    {
        release(object);
    }
};
using KeyFile = std::unique_ptr<GKeyFile, Releaser<&g_key_file_free>>;
using GText = std::unique_ptr<char, Releaser<&g_free>>;

KeyFile parseKeyFile(const QByteArray &bytes)
{
    KeyFile file(g_key_file_new());
    const QByteArray utf8 = decodedText(bytes).toUtf8();
    const auto size = static_cast<gsize>(utf8.size());
    if (utf8.contains('\0') || !g_key_file_load_from_data(file.get(), utf8.constData(), size, G_KEY_FILE_NONE, nullptr))
        return {};
    return file;
}

std::optional<LinkFileContent> parseDesktopFile(const QByteArray &bytes)
{
    const KeyFile file = parseKeyFile(bytes);
    if (!file)
        return std::nullopt;
    constexpr const char *section = "Desktop Entry";
    const auto value = [&file](const char *key) {
        return GText(g_key_file_get_string(file.get(), section, key, nullptr));
    };
    const GText type = value("Type");
    const GText address = value("URL");
    if (qstrcmp(type.get(), "Link") != 0 || !address)
        return std::nullopt;
    const GText name(g_key_file_get_locale_string(file.get(), section, "Name", nullptr, nullptr));
    return LinkFileContent{QString::fromUtf8(address.get()), QString::fromUtf8(name.get())};
}

std::optional<LinkFileContent> parseUrlFile(const QByteArray &bytes)
{
    const KeyFile file = parseKeyFile(bytes);
    if (!file)
        return std::nullopt;
    // The raw value: a backslash is itself here.
    const GText address(g_key_file_get_value(file.get(), "InternetShortcut", "URL", nullptr));
    if (!address)
        return std::nullopt;
    return LinkFileContent{QString::fromUtf8(address.get()), {}};
}

/// A binary property list whose only container is the outermost. With more,
/// a few bytes can stand for any number of objects, as the library makes a
/// copy for each reference; no link file has more.
bool isPlainBinaryPlist(const QByteArray &bytes)
{
    constexpr qsizetype trailerSize = 32;
    if (bytes.size() < trailerSize + 8)
        return false;
    const char *trailer = bytes.constData() + bytes.size() - trailerSize;
    const auto offsetSize = static_cast<quint8>(trailer[6]);
    const auto count = qFromBigEndian<quint64>(trailer + 8);
    const auto table = qFromBigEndian<quint64>(trailer + 24);
    const auto end = static_cast<quint64>(bytes.size() - trailerSize);
    if (offsetSize < 1 || offsetSize > 8 || table >= end || count > (end - table) / offsetSize)
        return false;
    int containers = 0;
    for (quint64 index = 0; index < count; ++index) {
        quint64 offset = 0;
        for (quint64 byte = 0; byte < offsetSize; ++byte)
            offset =
                offset << 8 | static_cast<quint8>(bytes.at(static_cast<qsizetype>(table + index * offsetSize + byte)));
        if (offset >= table)
            return false;
        containers += static_cast<quint8>(bytes.at(static_cast<qsizetype>(offset))) >= 0xA0 ? 1 : 0;
    }
    return containers <= 1;
}

std::optional<LinkFileContent> parseWebloc(const QByteArray &bytes)
{
    if (bytes.startsWith("bplist") && !isPlainBinaryPlist(bytes))
        return std::nullopt;
    plist_t parsed = nullptr;
    plist_from_memory(bytes.constData(), static_cast<uint32_t>(bytes.size()), &parsed);
    const std::unique_ptr<void, Releaser<&plist_free>> root(parsed);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT)
        return std::nullopt;
    const plist_t url = plist_dict_get_item(root.get(), "URL");
    if (!url || plist_get_node_type(url) != PLIST_STRING)
        return std::nullopt;
    uint64_t length = 0;
    const char *address = plist_get_string_ptr(url, &length);
    return LinkFileContent{QString::fromUtf8(address, static_cast<qsizetype>(length)), {}};
}

struct Kind {
    QLatin1StringView suffix;
    std::optional<LinkFileContent> (*parse)(const QByteArray &);
};
constexpr std::array kinds = {Kind{"desktop"_L1, &parseDesktopFile}, Kind{"url"_L1, &parseUrlFile},
                              Kind{"webloc"_L1, &parseWebloc}};

/// Null for a name that is none of a link file.
const Kind *kindOf(const QString &suffix)
{
    const QString lower = suffix.toLower();
    const auto found = std::find_if(kinds.begin(), kinds.end(), [&](const Kind &kind) { return lower == kind.suffix; });
    return found == kinds.end() ? nullptr : found;
}

class Reader
{
public:
    Reader(Timestamp now, WorkProgress *progress) : m_now(now), m_progress(progress) {}

    /// Appends what the file or folder holds. False when the work is to end.
    bool add(const QFileInfo &info, LinkList &items, int depth)
    {
        if (m_progress && m_progress->cancelled)
            return stop(ForeignError::Kind::Cancelled);
        if (++m_seen > maxForeignItems)
            return stop(ForeignError::Kind::TooManyItems);
        if (info.isDir())
            return addFolder(info, items, depth);
        addFile(info, items);
        return true;
    }

    /// What is in a folder; the groups of the third level are folded.
    bool addMembers(const QString &folder, LinkList &items, int depth)
    {
        QDirIterator entries(folder, QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        QList<QFileInfo> found;
        while (entries.hasNext()) {
            entries.next();
            found += entries.fileInfo();
            if (m_seen + found.size() > maxForeignItems)
                return stop(ForeignError::Kind::TooManyItems);
        }
        std::sort(found.begin(), found.end(),
                  [](const QFileInfo &a, const QFileInfo &b) { return a.fileName() < b.fileName(); });
        qsizetype done = 0;
        for (const QFileInfo &info : found) {
            if (!add(info, items, depth))
                return false;
            if (m_progress && depth == 0)
                m_progress->permille = static_cast<int>(++done * 1000 / found.size());
        }
        return true;
    }

    Result<ForeignLinks, ForeignError> finished(const LinkList &items)
    {
        if (m_stopped)
            return ForeignError{*m_stopped, {}};
        m_result.items = items;
        if (m_result.links == 0 && m_result.leftOut == 0)
            return ForeignError{ForeignError::Kind::NoLinks, {}};
        return m_result;
    }

private:
    bool stop(ForeignError::Kind why)
    {
        m_stopped = why;
        return false;
    }

    bool addFolder(const QFileInfo &info, LinkList &items, int depth)
    {
        // A link to a folder may lead in a circle, or to everywhere.
        if (info.isSymLink() || !info.isReadable() || depth >= maxFolderDepth) {
            ++m_result.unreadable;
            return true;
        }
        LinkList members;
        if (!addMembers(info.filePath(), members, depth + 1))
            return false;
        if (members.isEmpty())
            return true;
        if (depth + 1 >= foreignLevels) {
            ++m_result.foldedFolders;
            items += members;
            return true;
        }
        LinkItem group = foreignGroup(info.fileName(), m_now);
        group.children = members;
        items += group;
        return true;
    }

    void addFile(const QFileInfo &info, LinkList &items)
    {
        const Kind *kind = kindOf(info.suffix());
        if (!kind) {
            ++m_result.otherFiles;
            return;
        }
        const auto bytes = readPlainFile(info.filePath(), maxLinkFileBytes);
        const auto content = bytes ? kind->parse(*bytes) : std::nullopt;
        if (!content) {
            ++m_result.unreadable;
            return;
        }
        const auto address = usableAddress(content->address);
        if (!address) {
            ++m_result.leftOut;
            return;
        }
        const QString name = content->name.isEmpty() ? info.completeBaseName() : content->name;
        items += foreignLink(name, *address, m_now);
        ++m_result.links;
    }

    Timestamp m_now;
    WorkProgress *m_progress;
    ForeignLinks m_result;
    std::optional<ForeignError::Kind> m_stopped;
    qint64 m_seen = 0;
};

} // namespace

bool isLinkFileName(const QString &path)
{
    return kindOf(QFileInfo(path).suffix()) != nullptr;
}

std::optional<LinkFileContent> parseLinkFile(const QByteArray &bytes, const QString &suffix)
{
    const Kind *kind = kindOf(suffix);
    return kind && bytes.size() <= maxLinkFileBytes ? kind->parse(bytes) : std::nullopt;
}

Result<ForeignLinks, ForeignError> readLinkFiles(const QStringList &paths, Timestamp now, WorkProgress *progress)
{
    Reader reader(now, progress);
    LinkList items;
    for (const QString &path : paths) {
        if (!reader.add(QFileInfo(path), items, 0))
            break;
    }
    return reader.finished(items);
}

Result<ForeignLinks, ForeignError> readLinkFolder(const QString &path, Timestamp now, WorkProgress *progress)
{
    const QDir folder(path);
    if (!folder.exists())
        return ForeignError{ForeignError::Kind::NotAFolder, {}};
    if (!folder.isReadable())
        return ForeignError{ForeignError::Kind::Unreadable, QString::fromLocal8Bit(strerror(EACCES))};
    Reader reader(now, progress);
    LinkList items;
    reader.addMembers(folder.absolutePath(), items, 0);
    return reader.finished(items);
}

} // namespace orvelle
