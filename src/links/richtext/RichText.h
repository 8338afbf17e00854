#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace orvelle {

/// The sizes of text, as steps around the desktop's own font size.
enum class TextSize { Small, Normal, Large, Larger, Huge };

enum class ListKind { None, Bullet, Numbered, Check };

/// How a stretch of text looks. A link is always shown underlined, so its
/// `underline` is false.
struct RichStyle {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    TextSize size = TextSize::Normal;
    QString link = {}; ///< the address; empty for none

    friend bool operator==(const RichStyle &, const RichStyle &) = default;
};

/// An address as runs keep it: without quotes, control characters and white
/// space around it. One that is so already comes back as the same text, so that
/// all runs of a link share it.
QString cleanAddress(const QString &address);

struct RichRun {
    QString text;
    RichStyle style;

    friend bool operator==(const RichRun &, const RichRun &) = default;
};

/// Runs are never empty, and neighbours differ in style. `level` (0 to
/// maxLevel) is 0 outside of lists, `checked` false outside of check lists.
struct RichParagraph {
    static constexpr int maxLevel = 8;

    QList<RichRun> runs;
    ListKind list = ListKind::None;
    int level = 0;
    bool checked = false;

    /// Adds text at the end, in normal form: line ends inside become U+2028,
    /// what is no character (lone surrogates, NUL, noncharacters that editors
    /// reserve) becomes U+FFFD, and addresses lose their quotes.
    void append(QStringView text, RichStyle style);
    /// Makes it an item of a list, with the level brought into its range.
    void setList(ListKind kind, int itemLevel, bool isChecked);
    QString text() const;

    friend bool operator==(const RichParagraph &, const RichParagraph &) = default;
};

/// Text with the formatting a note may have. Always one paragraph at least.
struct RichText {
    QList<RichParagraph> paragraphs{RichParagraph()};

    /// Lines of unformatted text; every kind of line end counts.
    static RichText fromPlainText(QStringView text);
    /// The text with a line for each paragraph. List items carry their
    /// markers: "• ", "1. ", "☐ " or "☑ ", two spaces in for each level.
    QString toPlainText() const;

    bool isEmpty() const { return paragraphs.size() == 1 && paragraphs.front().runs.isEmpty(); }

    friend bool operator==(const RichText &, const RichText &) = default;
};

/// Numbers the items of lists. A list goes on through items below it and ends
/// at a paragraph of another kind or at a higher level.
class ListCounter
{
public:
    /// The number (from 1) of the next paragraph in its list; 0 outside lists.
    int next(ListKind kind, int level);

private:
    struct Level {
        ListKind kind = ListKind::None;
        int count = 0;
    };
    QList<Level> m_levels;
};

/// What stands before a list item ("•", "3.", "☐", "☑"); empty outside lists.
QString listMarker(ListKind kind, int number, bool checked);

/// Whether both texts say the same but for spaces, line ends and the markers
/// of list items.
bool sameWords(QStringView a, QStringView b);

} // namespace orvelle
