#include "links/richtext/RtfReader.h"

#include "links/richtext/RtfCharset.h"
#include "links/richtext/RtfLexer.h"
#include "links/richtext/RtfLists.h"
#include "links/richtext/RtfWords.h"

#include <QHash>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace orvelle {

namespace {

using Kind = RtfLexer::Kind;
using Token = RtfLexer::Token;
using Destination = RtfDestination;
using Action = RtfWord::Action;

/// No address that anybody opens is longer, and every run looks at it.
constexpr qsizetype maxInstruction = 4096;

struct Field {
    QString instruction;         ///< at most one character longer than it may be
    std::optional<QString> link; ///< known once a result begins
};

/// What a group hands down to the groups inside it, and takes back at its end.
struct Group {
    Destination destination = Destination::Text;
    RichStyle style;
    int font = 0;
    int bytesPerUnicode = 1; ///< \uc: how much text stands in for each \u
    int field = -1;
    int list = 0;
    int level = 0;
};

TextSize sizeOf(int halfPoints)
{
    struct Step {
        int upTo;
        TextSize size;
    };
    static constexpr Step steps[] = {
        {21, TextSize::Small}, {28, TextSize::Normal}, {34, TextSize::Large}, {42, TextSize::Larger}};
    for (const Step &step : steps) {
        if (halfPoints <= step.upTo)
            return step.size;
    }
    return TextSize::Huge;
}

/// The address in a field such as: HYPERLINK \o "a tip" "https://host/".
QString linkOfField(const QString &instruction)
{
    const QString trimmed = instruction.trimmed();
    const QLatin1StringView keyword("HYPERLINK");
    if (!trimmed.startsWith(keyword, Qt::CaseInsensitive))
        return {};
    QStringView rest = QStringView(trimmed).sliced(keyword.size()).trimmed();
    while (rest.startsWith(u'\\') && rest.size() > 1) {
        const bool hasArgument = QStringView(u"olt").contains(rest[1]);
        rest = rest.sliced(2).trimmed();
        if (hasArgument && rest.startsWith(u'"'))
            rest = rest.sliced(std::min(rest.size(), rest.indexOf(u'"', 1) + 1)).trimmed();
    }
    if (!rest.startsWith(u'"'))
        return rest.left(rest.indexOf(u' ') < 0 ? rest.size() : rest.indexOf(u' ')).toString();
    const qsizetype end = rest.indexOf(u'"', 1);
    return rest.sliced(1, (end < 0 ? rest.size() : end) - 1)
        .toString()
        .replace(QStringLiteral("\\\\"), QStringLiteral("\\"));
}

class Reader
{
public:
    explicit Reader(QByteArrayView bytes) : m_lexer(bytes) { m_result.text.paragraphs.clear(); }

    Result<RtfDocument, RtfError> read();

private:
    bool take(const Token &token);
    bool open();
    void close();
    void symbol(unsigned char c);
    void word(const Token &token);
    void begin(Destination destination);
    void beginResult(Field &field);
    void textWord(const RtfWord &known, int value);
    void fontWord(const RtfWord &known, int value);
    void listWord(const RtfWord &known, int value);
    void styleWord(const RtfWord &known, int value);
    void addByte(unsigned char byte) { m_bytes += static_cast<char>(byte); }
    void addChar(char16_t c);
    void decodeBytes();
    void commit();
    void endParagraph();

    Group &group() { return m_groups.back(); }

    RtfLexer m_lexer;
    RtfCharset m_charset;
    RtfLists m_lists;
    RtfDocument m_result;
    std::vector<Group> m_groups;
    QHash<int, int> m_codePages; ///< by font
    int m_tableFont = 0;
    int m_defaultFont = 0;
    int m_defaultPage = RtfCharset::windowsLatin1;
    QByteArray m_bytes; ///< text not decoded yet
    QString m_chars;    ///< text not given to its destination yet
    std::vector<Field> m_fields;
    RichParagraph m_paragraph;
    std::optional<ListKind> m_legacyList;
    QString m_markerText;
    int m_toSkip = 0;         ///< how much of what follows stands in for a \u
    bool m_ignorable = false; ///< \* was read
};

Result<RtfDocument, RtfError> Reader::read()
{
    do {
        const Token token = m_lexer.next();
        if (token.kind == Kind::End) {
            m_result.incomplete = true;
            while (!m_groups.empty())
                close();
        } else if (!take(token)) {
            return RtfError::TooDeep;
        }
        if (m_result.text.paragraphs.size() > maxRtfParagraphs)
            return RtfError::TooLarge;
    } while (!m_groups.empty());
    return std::move(m_result);
}

bool Reader::take(const Token &token)
{
    if (token.kind == Kind::GroupOpen)
        return open();
    if (token.kind == Kind::GroupClose) {
        close();
        return true;
    }
    if (m_toSkip > 0)
        --m_toSkip;
    else if (token.kind == Kind::Byte)
        addByte(token.byte);
    else if (token.kind == Kind::Word)
        word(token);
    else
        symbol(token.byte);
    return true;
}

bool Reader::open()
{
    if (static_cast<qsizetype>(m_groups.size()) >= maxRtfDepth)
        return false;
    m_toSkip = 0;
    m_ignorable = false;
    if (!m_groups.empty())
        commit();
    m_groups.push_back(m_groups.empty() ? Group() : Group(m_groups.back()));
    return true;
}

void Reader::close()
{
    m_toSkip = 0;
    m_ignorable = false;
    commit();
    if (m_groups.size() == 1) {
        group().destination = Destination::Text;
        endParagraph();
    }
    m_groups.pop_back();
}

void Reader::symbol(unsigned char c)
{
    switch (c) {
    case '*':
        m_ignorable = true;
        break;
    case '\n':
        endParagraph();
        break;
    case '~':
        addChar(QChar::Nbsp);
        break;
    case '_':
        addChar(0x2011);
        break;
    case '-':
        addChar(QChar::SoftHyphen);
        break;
    default:
        break;
    }
}

void Reader::word(const Token &token)
{
    const RtfWord *known = rtfWord(token.name);
    const bool ignorable = std::exchange(m_ignorable, false);
    if (known && known->action == Action::Begin) {
        begin(static_cast<Destination>(known->argument));
    } else if (ignorable) {
        begin(Destination::Skip);
    } else if (known && group().destination != Destination::Skip) {
        // A toggle without a number is on.
        const bool isOn = known->action == Action::Toggle && !token.hasNumber;
        textWord(*known, isOn ? 1 : token.number);
    }
}

void Reader::begin(Destination destination)
{
    commit();
    const Destination around = group().destination;
    if (around == Destination::Skip)
        return;
    group().destination = destination;
    switch (destination) {
    case Destination::LeftOut:
        m_result.incomplete = true;
        group().destination = Destination::Skip;
        break;
    case Destination::Field:
        group().destination = Destination::Text;
        group().field = static_cast<int>(m_fields.size());
        m_fields.emplace_back();
        break;
    case Destination::FieldResult:
        group().destination = Destination::Text;
        if (group().field >= 0)
            beginResult(m_fields[static_cast<std::size_t>(group().field)]);
        break;
    case Destination::UnicodeForm:
        group().destination = around == Destination::TwoForms ? Destination::Text : Destination::Skip;
        break;
    default:
        break;
    }
}

void Reader::beginResult(Field &field)
{
    const bool isTooLong = field.instruction.size() > maxInstruction;
    if (!field.link)
        field.link = isTooLong ? QString() : cleanAddress(linkOfField(field.instruction));
    group().style.link = *field.link;
    m_result.incomplete = m_result.incomplete || isTooLong;
}

void Reader::textWord(const RtfWord &known, int value)
{
    switch (known.action) {
    case Action::Char:
        addChar(static_cast<char16_t>(known.argument));
        break;
    case Action::Unicode:
        addChar(static_cast<char16_t>(value));
        m_toSkip = group().bytesPerUnicode;
        break;
    case Action::UnicodeBytes:
        group().bytesPerUnicode = std::clamp(value, 0, 16);
        break;
    case Action::Paragraph:
        endParagraph();
        break;
    case Action::Table:
        m_result.incomplete = true;
        break;
    case Action::CodePage:
        decodeBytes();
        m_defaultPage = known.argument ? known.argument : value;
        break;
    default:
        fontWord(known, value);
        break;
    }
}

void Reader::fontWord(const RtfWord &known, int value)
{
    switch (known.action) {
    case Action::Font:
        decodeBytes();
        m_tableFont = value;
        group().font = value;
        break;
    case Action::DefaultFont:
        m_defaultFont = value;
        group().font = value;
        break;
    case Action::FontCharset:
        m_codePages[m_tableFont] = RtfCharset::codePageOfCharset(value, m_defaultPage);
        break;
    case Action::FontCodePage:
        m_codePages[m_tableFont] = value;
        break;
    default:
        listWord(known, value);
        break;
    }
}

void Reader::listWord(const RtfWord &known, int value)
{
    const bool inTable = group().destination == Destination::ListTable;
    const bool inOverrides = group().destination == Destination::OverrideTable;
    switch (known.action) {
    case Action::List:
        if (inTable)
            m_lists.addList();
        break;
    case Action::ListLevel:
        if (inTable)
            m_lists.addLevel();
        break;
    case Action::NumberFormat:
        if (inTable)
            m_lists.setNumberFormat(value);
        break;
    case Action::ListId:
        if (inTable)
            m_lists.setListId(value);
        else if (inOverrides)
            m_lists.setOverriddenList(value);
        break;
    case Action::ListNumber:
        if (inOverrides)
            m_lists.setOverrideNumber(value);
        else
            group().list = value;
        break;
    case Action::ItemLevel:
        group().level = value;
        break;
    case Action::LegacyKind:
        m_legacyList = static_cast<ListKind>(known.argument);
        break;
    default:
        styleWord(known, value);
        break;
    }
}

void Reader::styleWord(const RtfWord &known, int value)
{
    static constexpr bool RichStyle::*toggles[] = {&RichStyle::bold, &RichStyle::italic, &RichStyle::underline,
                                                   &RichStyle::strike};
    commit();
    Group &g = group();
    switch (known.action) {
    case Action::Toggle:
        g.style.*toggles[known.argument] = value != 0;
        break;
    case Action::ToggleOff:
        g.style.*toggles[known.argument] = false;
        break;
    case Action::FontSize:
        g.style.size = sizeOf(value);
        break;
    case Action::TextStyle:
        g.style = {false, false, false, false, TextSize::Normal, g.style.link};
        g.font = m_defaultFont;
        break;
    case Action::ParagraphStyle:
        g.list = 0;
        g.level = 0;
        m_legacyList.reset();
        break;
    default:
        break;
    }
}

void Reader::addChar(char16_t c)
{
    decodeBytes();
    m_chars += QChar(c);
}

void Reader::decodeBytes()
{
    if (m_bytes.isEmpty())
        return;
    m_chars += m_charset.decode(m_bytes, m_codePages.value(group().font, m_defaultPage));
    m_bytes.clear();
}

void Reader::commit()
{
    decodeBytes();
    if (m_chars.isEmpty())
        return;
    switch (group().destination) {
    case Destination::Text:
        m_paragraph.append(m_chars, group().style);
        break;
    case Destination::MarkerText:
        m_markerText += m_chars;
        break;
    case Destination::LevelText:
        m_lists.addLevelText(m_chars);
        break;
    case Destination::FieldInstruction:
        if (group().field >= 0) {
            QString &instruction = m_fields[static_cast<std::size_t>(group().field)].instruction;
            instruction += QStringView(m_chars).left(maxInstruction + 1 - instruction.size());
        }
        break;
    default:
        break;
    }
    m_chars.clear();
}

void Reader::endParagraph()
{
    if (group().destination != Destination::Text)
        return;
    commit();
    m_lists.apply({group().list, group().level, m_legacyList, m_markerText}, m_paragraph);
    m_result.text.paragraphs.append(m_paragraph);
    m_paragraph = {};
    m_markerText.clear();
}

} // namespace

Result<RtfDocument, RtfError> readRtf(QByteArrayView bytes)
{
    if (bytes.size() > maxRtfSize)
        return RtfError::TooLarge;
    if (!bytes.trimmed().startsWith("{\\rtf"))
        return RtfError::NotRtf;
    return Reader(bytes.trimmed()).read();
}

} // namespace orvelle
