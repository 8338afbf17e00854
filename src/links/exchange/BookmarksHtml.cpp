#include "links/exchange/BookmarksHtml.h"

#include "links/exchange/HtmlTree.h"
#include "links/exchange/LinkExchange.h"

#include <QRegularExpression>

#include <vector>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr qsizetype headSize = 4096;
constexpr double year1990 = 631152000;
constexpr double year2100 = 4102444800;
/// Seconds from 1601, from where one family of browsers counts, to 1970.
constexpr double from1601 = 11644473600;

/// Seconds, milliseconds or microseconds since 1970, or microseconds since
/// 1601; between 1990 and 2100 no two of them can be confused.
std::optional<Timestamp> dateFrom(QByteArrayView attribute)
{
    bool isNumber = false;
    const double value = QByteArray(attribute.data(), attribute.size()).trimmed().toDouble(&isNumber);
    if (!isNumber)
        return std::nullopt;
    for (const double seconds : {value, value / 1e3, value / 1e6, value / 1e6 - from1601}) {
        if (seconds >= year1990 && seconds < year2100)
            return Timestamp::fromUnixSeconds(seconds);
    }
    return std::nullopt;
}

bool isFolderName(GumboTag tag)
{
    // <H1> is the title of the page.
    return tag >= GUMBO_TAG_H2 && tag <= GUMBO_TAG_H6;
}

bool endsName(GumboTag tag)
{
    return tag == GUMBO_TAG_A || tag == GUMBO_TAG_DL || tag == GUMBO_TAG_DT || tag == GUMBO_TAG_DD || isFolderName(tag);
}

/// The text in an element, without that of the bookmarks and folders that ended
/// up inside because its end is missing.
QString nameIn(const GumboNode *element)
{
    QByteArray name;
    for (const GumboNode *node = childAt(element, 0); node;) {
        if (node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE)
            name += node->v.text.text;
        const bool skip = endsName(tagOf(node));
        const GumboNode *down = skip ? nullptr : childAt(node, 0);
        while (!down && node != element) {
            down = childAt(node->parent, node->index_within_parent + 1);
            node = node->parent;
        }
        node = down;
    }
    return QString::fromUtf8(name);
}

/// The parser copies an <A> that is still open where the next one begins.
bool isCopy(const GumboNode *element)
{
    return (element->parse_flags &
            (GUMBO_INSERTION_ADOPTION_AGENCY_CLONED | GUMBO_INSERTION_RECONSTRUCTED_FORMATTING_ELEMENT)) != 0;
}

/// Builds the tree while the page is walked.
class Collector
{
public:
    explicit Collector(Timestamp now) : m_now(now)
    {
        m_levels.push_back({{}, 0, 0});
        m_levels.front().group.children.emplace();
    }

    bool isFull() const { return m_items > maxForeignItems; }
    bool sawList() const { return m_sawList; }

    void enter(const GumboNode *node)
    {
        const GumboTag tag = tagOf(node);
        if (tag == GUMBO_TAG_DL)
            enterList();
        else if (tag == GUMBO_TAG_A && !isCopy(node))
            addLink(node);
        else if (isFolderName(tag))
            enterName(node);
    }

    void leave(const GumboNode *node)
    {
        const GumboTag tag = tagOf(node);
        if (tag == GUMBO_TAG_DL)
            leaveList();
        else if (isFolderName(tag))
            m_inName = false;
    }

    ForeignLinks finished() &&
    {
        addEmptyFolder();
        m_result.items = std::move(*m_levels.front().group.children);
        return std::move(m_result);
    }

private:
    struct Level {
        LinkItem group;
        std::size_t target;   ///< the level whose list takes the members
        qsizetype sizeBefore; ///< of that list
    };

    LinkList &members() { return *m_levels[m_levels.back().target].group.children; }

    void addLink(const GumboNode *node)
    {
        if (!m_inName)
            addEmptyFolder();
        const auto address = usableAddress(QString::fromUtf8(attributeOf(node, "href")));
        if (!address) {
            ++m_result.leftOut;
            return;
        }
        LinkItem item = foreignLink(nameIn(node), *address, m_now);
        setDates(item, node);
        members() += item;
        ++m_items;
        ++m_result.links;
    }

    void enterName(const GumboNode *node)
    {
        addEmptyFolder();
        m_inName = true;
        m_folder = foreignGroup(nameIn(node), m_now);
        setDates(*m_folder, node);
        ++m_items;
    }

    void setDates(LinkItem &item, const GumboNode *node) const
    {
        const auto added = dateFrom(attributeOf(node, "add_date"));
        const auto modified = dateFrom(attributeOf(node, "last_modified"));
        item.createdAt = added ? added : modified.value_or(m_now);
        item.modifiedAt = modified.value_or(*item.createdAt);
    }

    /// A folder that no list followed.
    void addEmptyFolder()
    {
        if (m_folder)
            members() += *m_folder;
        m_folder.reset();
    }

    void enterList()
    {
        m_sawList = true;
        m_lists.push_back(m_folder.has_value());
        m_inName = false;
        if (!m_folder)
            return;
        const std::size_t level = m_levels.size();
        const bool fits = level < foreignLevels;
        const std::size_t target = fits ? level : m_levels.back().target;
        m_levels.push_back({*m_folder, target, 0});
        m_levels.back().sizeBefore = members().size();
        m_folder.reset();
    }

    void leaveList()
    {
        addEmptyFolder();
        if (m_lists.empty())
            return;
        const bool isFolder = m_lists.back();
        m_lists.pop_back();
        if (!isFolder)
            return;
        Level level = std::move(m_levels.back());
        const bool folds = level.target + 1 != m_levels.size();
        m_levels.pop_back();
        if (folds && members().size() > level.sizeBefore)
            ++m_result.foldedFolders;
        else
            members() += level.group;
    }

    Timestamp m_now;
    ForeignLinks m_result;
    std::vector<Level> m_levels;      ///< the open folders; the first is the top level
    std::vector<bool> m_lists;        ///< the open lists: whether each is that of a folder
    std::optional<LinkItem> m_folder; ///< was named, its list has not begun
    qint64 m_items = 0;
    bool m_inName = false;
    bool m_sawList = false;
};

/// What the page says its characters are; empty when it says nothing.
QByteArray declaredCharset(const QByteArray &bytes)
{
    static const QRegularExpression pattern(uR"(charset\s*=\s*["']?([A-Za-z0-9_-]{1,40}))"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern.match(QString::fromLatin1(bytes.left(headSize))).captured(1).toLatin1();
}

ForeignError errorFrom(HtmlTree::Failure failure)
{
    switch (failure) {
    case HtmlTree::Failure::TooDeep:
        return {ForeignError::Kind::TooDeep, {}};
    case HtmlTree::Failure::TooLarge:
        return {ForeignError::Kind::TooLarge, {}};
    case HtmlTree::Failure::Cancelled:
        break;
    }
    return {ForeignError::Kind::Cancelled, {}};
}

class Writer
{
public:
    explicit Writer(const QString &title)
    {
        out.html = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
                   "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
                   "<TITLE>" +
                   escaped(title) + "</TITLE>\n<H1>" + escaped(title) + "</H1>\n";
    }

    void list(const LinkList &links, int depth)
    {
        const QByteArray indent(depth * 4, ' ');
        out.html += indent + "<DL><p>\n";
        for (const LinkItem &item : links) {
            if (item.type == LinkType::Note)
                ++out.notesLeftOut;
            else if (item.isGroup())
                folder(item, depth + 1);
            else
                link(item, depth + 1);
        }
        out.html += indent + "</DL><p>\n";
    }

    WrittenBookmarks out;

private:
    static QByteArray escaped(const QString &text) { return text.toHtmlEscaped().toUtf8(); }

    static QByteArray dates(const LinkItem &item)
    {
        const auto date = [](const char *name, const std::optional<Timestamp> &when) -> QByteArray {
            // The distant past stands for "unknown".
            if (!when || when->unixSeconds() < year1990 || when->unixSeconds() >= year2100)
                return {};
            return ' ' + QByteArray(name) + "=\"" + QByteArray::number(qint64(when->unixSeconds())) + '"';
        };
        return date("ADD_DATE", item.createdAt) + date("LAST_MODIFIED", item.modifiedAt);
    }

    void folder(const LinkItem &item, int depth)
    {
        out.html += QByteArray(depth * 4, ' ') + "<DT><H3" + dates(item) + '>' + escaped(item.name) + "</H3>\n";
        list(item.children.value_or(LinkList()), depth);
    }

    void link(const LinkItem &item, int depth)
    {
        out.html += QByteArray(depth * 4, ' ') + "<DT><A HREF=\"" + escaped(addressOf(item)) + '"' + dates(item) + '>' +
                    escaped(item.name) + "</A>\n";
        ++out.links;
    }
};

} // namespace

bool looksLikeBookmarksHtml(const QByteArray &head)
{
    const QString begin = decodedText(head.left(headSize)).toLower();
    return begin.contains(u"netscape-bookmark-file") || begin.contains(u"<dl>");
}

Result<ForeignLinks, ForeignError> readBookmarksHtml(const QByteArray &bytes, Timestamp now, WorkProgress *progress)
{
    if (bytes.size() > maxForeignBytes)
        return ForeignError{ForeignError::Kind::TooLarge, {}};
    const auto tree = HtmlTree::parse(decodedText(bytes, declaredCharset(bytes)).toUtf8(), progress);
    if (!tree)
        return errorFrom(tree.error());
    Collector collector(now);
    const auto leave = [&collector](const GumboNode *node) { collector.leave(node); };
    for (const GumboNode *node = (*tree)->document(); node; node = nextNode(node, leave)) {
        if (collector.isFull())
            return ForeignError{ForeignError::Kind::TooManyItems, {}};
        if (progress && progress->cancelled)
            return ForeignError{ForeignError::Kind::Cancelled, {}};
        collector.enter(node);
    }
    if (!collector.sawList() && !looksLikeBookmarksHtml(bytes))
        return ForeignError{ForeignError::Kind::NotBookmarks, {}};
    ForeignLinks result = std::move(collector).finished();
    if (progress)
        progress->permille = 1000;
    if (result.items.isEmpty() && result.leftOut == 0)
        return ForeignError{ForeignError::Kind::NoLinks, {}};
    return result;
}

WrittenBookmarks writeBookmarksHtml(const LinkList &links, const QString &title)
{
    Writer writer(title);
    writer.list(links, 0);
    return std::move(writer.out);
}

} // namespace orvelle
