#pragma once

#include <QByteArrayView>

namespace orvelle {

/// Where the text of a group goes.
enum class RtfDestination {
    Text,
    Skip,
    LeftOut, ///< skipped, and the reader tells that something is missing
    FontTable,
    ListTable,
    LevelText,
    OverrideTable,
    Field,
    FieldInstruction,
    FieldResult,
    MarkerText,
    LegacyList,
    TwoForms,    ///< \upr: the same text twice, in ANSI and
    UnicodeForm, ///< in Unicode
};

enum class RtfToggle { Bold, Italic, Underline, Strike };

/// What a control word does, as far as notes care.
struct RtfWord {
    enum class Action {
        Begin,          ///< `argument` is the RtfDestination
        Char,           ///< `argument` is the UTF-16 unit
        Toggle,         ///< `argument` is the RtfToggle
        ToggleOff,      ///< the same, off
        Paragraph,      ///< ends one
        ParagraphStyle, ///< back to a plain paragraph
        TextStyle,      ///< back to plain text
        FontSize,
        Font,
        DefaultFont,
        FontCharset,
        FontCodePage,
        CodePage, ///< `argument` is the page, 0 for the word's number
        Unicode,
        UnicodeBytes,
        List,
        ListLevel,
        NumberFormat,
        ListId,
        ListNumber,
        ItemLevel,
        LegacyKind, ///< `argument` is the ListKind
        Table,
    };
    const char *name;
    Action action;
    int argument;
};

/// Null for a word that means nothing here.
const RtfWord *rtfWord(QByteArrayView name);

} // namespace orvelle
