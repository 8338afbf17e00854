#pragma once

#include "links/LinkItem.h"
#include "links/richtext/RichText.h"

namespace orvelle {

/// What is stored of a note's text: plain, and with its formatting.
struct NoteContent {
    QString plain;
    std::optional<QByteArray> rtf;

    static NoteContent of(const LinkItem &note);

    struct Decoded {
        RichText text;
        /// The stored form holds more than the text shows: pictures, tables,
        /// or formatting that could not be read.
        bool incomplete = false;
    };
    /// The rich text where it can be read and says the same as the plain one.
    /// Where it does not, a program that knows plain text only has written
    /// since, and the plain text counts.
    Decoded decoded() const;

    friend bool operator==(const NoteContent &, const NoteContent &) = default;
};

/// Both forms of `text`, and the times that go with a change of a note's text.
void setNoteText(LinkItem &note, const RichText &text, Timestamp now);

} // namespace orvelle
