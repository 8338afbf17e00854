#include "links/richtext/RtfWords.h"

#include "links/richtext/RichText.h"

#include <QHash>

namespace orvelle {

namespace {

using Action = RtfWord::Action;

constexpr RtfWord begin(const char *name, RtfDestination destination)
{
    return {name, Action::Begin, static_cast<int>(destination)};
}

constexpr RtfWord character(const char *name, char16_t c)
{
    return {name, Action::Char, c};
}

constexpr RtfWord toggle(const char *name, RtfToggle which)
{
    return {name, Action::Toggle, static_cast<int>(which)};
}

constexpr RtfWord legacy(const char *name, ListKind kind)
{
    return {name, Action::LegacyKind, static_cast<int>(kind)};
}

constexpr RtfWord words[] = {
    begin("fonttbl", RtfDestination::FontTable),
    begin("listtable", RtfDestination::ListTable),
    begin("leveltext", RtfDestination::LevelText),
    begin("listoverridetable", RtfDestination::OverrideTable),
    begin("field", RtfDestination::Field),
    begin("fldinst", RtfDestination::FieldInstruction),
    begin("fldrslt", RtfDestination::FieldResult),
    begin("listtext", RtfDestination::MarkerText),
    begin("pntext", RtfDestination::MarkerText),
    begin("pn", RtfDestination::LegacyList),
    begin("upr", RtfDestination::TwoForms),
    begin("ud", RtfDestination::UnicodeForm),
    begin("pict", RtfDestination::LeftOut),
    begin("NeXTGraphic", RtfDestination::LeftOut),
    begin("objdata", RtfDestination::LeftOut),
    begin("footnote", RtfDestination::LeftOut),
    begin("shpinst", RtfDestination::LeftOut),
    begin("header", RtfDestination::LeftOut),
    begin("headerl", RtfDestination::LeftOut),
    begin("headerr", RtfDestination::LeftOut),
    begin("headerf", RtfDestination::LeftOut),
    begin("footer", RtfDestination::LeftOut),
    begin("footerl", RtfDestination::LeftOut),
    begin("footerr", RtfDestination::LeftOut),
    begin("footerf", RtfDestination::LeftOut),
    begin("colortbl", RtfDestination::Skip),
    begin("stylesheet", RtfDestination::Skip),
    begin("info", RtfDestination::Skip),
    begin("filetbl", RtfDestination::Skip),
    begin("revtbl", RtfDestination::Skip),
    begin("rsidtbl", RtfDestination::Skip),
    begin("levelnumbers", RtfDestination::Skip),
    begin("listname", RtfDestination::Skip),
    begin("nonshppict", RtfDestination::Skip),
    begin("nonesttables", RtfDestination::Skip),
    begin("xe", RtfDestination::Skip),
    begin("tc", RtfDestination::Skip),
    begin("rxe", RtfDestination::Skip),
    begin("txe", RtfDestination::Skip),
    begin("private", RtfDestination::Skip),
    character("tab", u'\t'),
    character("cell", u'\t'),
    character("nestcell", u'\t'),
    character("line", 0x2028),
    character("softline", 0x2028),
    character("emdash", 0x2014),
    character("endash", 0x2013),
    character("emspace", 0x2003),
    character("enspace", 0x2002),
    character("qmspace", 0x2005),
    character("bullet", 0x2022),
    character("lquote", 0x2018),
    character("rquote", 0x2019),
    character("ldblquote", 0x201c),
    character("rdblquote", 0x201d),
    character("zwj", 0x200d),
    character("zwnj", 0x200c),
    character("ltrmark", 0x200e),
    character("rtlmark", 0x200f),
    toggle("b", RtfToggle::Bold),
    toggle("i", RtfToggle::Italic),
    toggle("strike", RtfToggle::Strike),
    toggle("striked", RtfToggle::Strike),
    toggle("ul", RtfToggle::Underline),
    toggle("uld", RtfToggle::Underline),
    toggle("uldash", RtfToggle::Underline),
    toggle("uldashd", RtfToggle::Underline),
    toggle("uldashdd", RtfToggle::Underline),
    toggle("uldb", RtfToggle::Underline),
    toggle("ulth", RtfToggle::Underline),
    toggle("ulw", RtfToggle::Underline),
    toggle("ulwave", RtfToggle::Underline),
    {"ulnone", Action::ToggleOff, static_cast<int>(RtfToggle::Underline)},
    {"par", Action::Paragraph, 0},
    {"row", Action::Paragraph, 0},
    {"nestrow", Action::Paragraph, 0},
    {"page", Action::Paragraph, 0},
    {"sect", Action::Paragraph, 0},
    {"pard", Action::ParagraphStyle, 0},
    {"plain", Action::TextStyle, 0},
    {"fs", Action::FontSize, 0},
    {"f", Action::Font, 0},
    {"deff", Action::DefaultFont, 0},
    {"fcharset", Action::FontCharset, 0},
    {"cpg", Action::FontCodePage, 0},
    {"ansicpg", Action::CodePage, 0},
    {"ansi", Action::CodePage, 1252},
    {"mac", Action::CodePage, 10000},
    {"pc", Action::CodePage, 437},
    {"pca", Action::CodePage, 850},
    {"u", Action::Unicode, 0},
    {"uc", Action::UnicodeBytes, 0},
    {"list", Action::List, 0},
    {"listlevel", Action::ListLevel, 0},
    {"levelnfc", Action::NumberFormat, 0},
    {"levelnfcn", Action::NumberFormat, 0},
    {"listid", Action::ListId, 0},
    {"ls", Action::ListNumber, 0},
    {"ilvl", Action::ItemLevel, 0},
    legacy("pnlvlblt", ListKind::Bullet),
    legacy("pnlvlbody", ListKind::Numbered),
    legacy("pnlvl", ListKind::Numbered),
    legacy("pnlvlcont", ListKind::None),
    {"trowd", Action::Table, 0},
};

} // namespace

const RtfWord *rtfWord(QByteArrayView name)
{
    static const QHash<QByteArrayView, const RtfWord *> table = [] {
        QHash<QByteArrayView, const RtfWord *> result;
        for (const RtfWord &word : words)
            result.insert(word.name, &word);
        return result;
    }();
    return table.value(name, nullptr);
}

} // namespace orvelle
