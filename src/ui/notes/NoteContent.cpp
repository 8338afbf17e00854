#include "ui/notes/NoteContent.h"

#include "links/LinkEditing.h"
#include "links/richtext/RtfReader.h"
#include "links/richtext/RtfWriter.h"

#include <QLoggingCategory>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcNoteContent, "Notes", QtInfoMsg)

} // namespace

NoteContent NoteContent::of(const LinkItem &note)
{
    return {note.noteContent.value_or(QString()), note.noteRTFData};
}

NoteContent::Decoded NoteContent::decoded() const
{
    if (!rtf || rtf->isEmpty())
        return {RichText::fromPlainText(plain), false};
    auto read = readRtf(*rtf);
    if (!read) {
        qCWarning(lcNoteContent, "Rich text cannot be read (reason %d), showing the plain text",
                  static_cast<int>(read.error()));
        return {RichText::fromPlainText(plain), true};
    }
    if (!sameWords(read->text.toPlainText(), plain)) {
        qCInfo(lcNoteContent, "Rich and plain text differ, showing the plain text");
        return {RichText::fromPlainText(plain), true};
    }
    return {read->text, read->incomplete};
}

void setNoteText(LinkItem &note, const RichText &text, Timestamp now)
{
    note.noteContent = text.toPlainText();
    note.noteRTFData = text.isEmpty() ? std::nullopt : std::optional(writeRtf(text));
    note.contentModifiedAt = editDate(note.contentModifiedAt ? note.contentModifiedAt : note.modifiedAt, now);
    note.modifiedAt = editDate(note.modifiedAt, now);
}

} // namespace orvelle
