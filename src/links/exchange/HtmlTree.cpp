#include "links/exchange/HtmlTree.h"

#include "links/exchange/LinkExchange.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

namespace orvelle {

namespace {

/// Sum over all tags of how many elements are open there: about what the
/// parser's searches through the open elements cost.
constexpr qint64 maxNestingWork = 500'000'000;

/// Closed by themselves or never open, so that nobody writes their end.
constexpr std::array<std::string_view, 16> unnested = {"p",    "dt",   "dd",    "li",   "hr",     "br",   "img", "a",
                                                       "meta", "link", "input", "base", "option", "area", "col", "wbr"};

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// What a glance over the tags tells before the parser begins.
class TagSurvey
{
public:
    explicit TagSurvey(const QByteArray &html) : m_html(html.constData(), static_cast<std::size_t>(html.size()))
    {
        for (std::size_t at = m_html.find('<'); at != std::string_view::npos && work <= maxNestingWork;
             at = m_html.find('<', at + 1))
            tag(at + 1);
    }

    qint64 tags = 0;
    qint64 work = 0;
    qint64 deepest = 0;

private:
    void tag(std::size_t at)
    {
        const bool ends = at < m_html.size() && m_html[at] == '/';
        at += ends ? 1 : 0;
        std::string name;
        while (at < m_html.size() && name.size() < 16 &&
               (isLetter(m_html[at]) || (m_html[at] >= '0' && m_html[at] <= '9')))
            name += static_cast<char>(m_html[at++] | 0x20);
        if (name.empty() || !isLetter(name.front()))
            return;
        ++tags;
        work += m_open;
        if (std::find(unnested.begin(), unnested.end(), name) != unnested.end())
            return;
        // Counted by name, so that an end of something else hides nothing.
        // Names that share a counter are taken for one.
        qint64 &open = m_openByName[std::hash<std::string>()(name) % m_openByName.size()];
        const qint64 before = open;
        open = ends ? std::max<qint64>(0, open - 1) : open + 1;
        m_open += open - before;
        deepest = std::max(deepest, m_open);
    }

    std::string_view m_html;
    std::array<qint64, 512> m_openByName = {};
    qint64 m_open = 0;
};

double threadSeconds()
{
    timespec spent = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) / 1e9;
}

} // namespace

/// All memory of one tree. The library has no way to stop it and frees a tree
/// by recursion, so it is left by a jump out of its allocator (it is C: nothing
/// has to be unwound), and the memory is freed here, block by block.
struct HtmlTree::Pool {
    struct alignas(std::max_align_t) Block {
        Block *previous;
        Block *next;
        std::size_t size;
    };

    Block ends = {&ends, &ends, 0}; ///< of a ring
    qint64 bytes = 0;
    qint64 allocations = 0;
    qint64 expectedNodes = 1;
    qint64 nodes = 0;
    double startedAt = threadSeconds();
    WorkProgress *progress = nullptr;
    Failure failure = Failure::TooLarge;
    std::jmp_buf escape;

    Pool() = default;
    Q_DISABLE_COPY_MOVE(Pool)
    ~Pool()
    {
        for (Block *block = ends.next; block != &ends;) {
            Block *next = block->next;
            std::free(block);
            block = next;
        }
    }

    [[noreturn]] void stop(Failure why)
    {
        failure = why;
        std::longjmp(escape, 1);
    }

    void look(std::size_t size)
    {
        if (progress && progress->cancelled.load(std::memory_order_relaxed))
            stop(Failure::Cancelled);
        nodes += size == sizeof(GumboNode) ? 1 : 0;
        if (++allocations % 512 != 0)
            return;
        if (threadSeconds() - startedAt > maxSeconds)
            stop(Failure::TooDeep);
        if (progress)
            progress->permille = static_cast<int>(std::min<qint64>(800, nodes * 800 / expectedNodes));
    }

    static void *allocate(void *self, std::size_t size)
    {
        auto &pool = *static_cast<Pool *>(self);
        pool.look(size);
        if (pool.bytes + static_cast<qint64>(size) > maxBytes)
            pool.stop(Failure::TooLarge);
        auto *block = static_cast<Block *>(std::malloc(sizeof(Block) + size));
        if (!block)
            pool.stop(Failure::TooLarge);
        *block = {pool.ends.previous, &pool.ends, size};
        block->previous->next = block;
        pool.ends.previous = block;
        pool.bytes += static_cast<qint64>(size);
        return block + 1;
    }

    static void release(void *self, void *memory)
    {
        if (!memory)
            return;
        auto &pool = *static_cast<Pool *>(self);
        Block *block = static_cast<Block *>(memory) - 1;
        block->previous->next = block->next;
        block->next->previous = block->previous;
        pool.bytes -= static_cast<qint64>(block->size);
        std::free(block);
    }

    /// Null when it was stopped. Nothing here may need destruction.
    const GumboNode *run(const char *text, std::size_t size)
    {
        GumboOptions options = kGumboDefaultOptions;
        options.allocator = &allocate;
        options.deallocator = &release;
        options.userdata = this;
        options.max_errors = 0;
        if (setjmp(escape) != 0)
            return nullptr;
        return gumbo_parse_with_options(&options, text, size)->document;
    }
};

HtmlTree::HtmlTree() : m_pool(std::make_unique<Pool>()) {}
HtmlTree::~HtmlTree() = default;

qint64 HtmlTree::nestingOf(const QByteArray &utf8)
{
    return TagSurvey(utf8).deepest;
}

Result<std::shared_ptr<const HtmlTree>, HtmlTree::Failure> HtmlTree::parse(const QByteArray &utf8,
                                                                           WorkProgress *progress)
{
    const TagSurvey survey(utf8);
    if (survey.work > maxNestingWork)
        return Failure::TooDeep;
    const std::shared_ptr<HtmlTree> tree(new HtmlTree);
    tree->m_source = utf8; // the nodes point into it
    tree->m_pool->progress = progress;
    // An element and a text for each pair of tags, about.
    tree->m_pool->expectedNodes = std::max<qint64>(1, survey.tags);
    tree->m_document = tree->m_pool->run(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    if (!tree->m_document)
        return tree->m_pool->failure;
    return std::shared_ptr<const HtmlTree>(tree);
}

} // namespace orvelle
