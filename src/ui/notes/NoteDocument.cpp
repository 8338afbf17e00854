#include "ui/notes/NoteDocument.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkStore.h"
#include "platform/Clock.h"

#include <QLoggingCategory>

#include <utility>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcNotes, "Notes", QtInfoMsg)

/// At the end, against other processes that keep changing the note.
constexpr int mostAttempts = 16;

LinkItem *findNote(LinkList &links, const QString &stableId)
{
    for (LinkItem &item : links) {
        if (item.stableId == stableId)
            return item.type == LinkType::Note ? &item : nullptr;
        if (item.children) {
            if (LinkItem *found = findNote(*item.children, stableId))
                return found;
        }
    }
    return nullptr;
}

RichText bothVersions(RichText mine, const RichText &theirs)
{
    for (const QString &line : {QString(), text("note.otherVersion"_text), QString()})
        mine.paragraphs += RichText::fromPlainText(line).paragraphs;
    mine.paragraphs += theirs.paragraphs;
    return mine;
}

} // namespace

NoteDocument::NoteDocument(const NoteEditorServices &services, const LinkItem &note,
                           std::function<RichText()> editorText)
    : m_services(services), m_note(note), m_editorText(std::move(editorText)), m_stored(NoteContent::of(note))
{
    connect(&m_services.links, &LinkStore::linksChanged, this, &NoteDocument::storeChanged);
    connect(&m_services.notifications, &Notifications::noteColorChanged, this, &NoteDocument::storeChanged);
}

NoteDocument::~NoteDocument() = default;

void NoteDocument::editorFilled()
{
    m_shown = m_editorText();
}

void NoteDocument::textEdited()
{
    m_timer = m_services.clock.singleShot(saveDelay, [this] { save(); });
}

bool NoteDocument::hasTyped() const
{
    return m_editorText() != m_shown;
}

void NoteDocument::save()
{
    m_timer.reset();
    if (m_state != State::Normal || !hasTyped())
        return;
    const RichText typed = m_editorText();
    const Timestamp now = m_services.clock.now();
    m_saving = true;
    // Another process may have written since: the store then runs this again
    // on that process's tree, where the text is no longer the one typed upon.
    // The store may keep the change for a later try, so it refers to nothing here.
    const auto change = [typed, now, stableId = m_note.stableId, expected = m_stored](LinkList &links) {
        LinkItem *note = findNote(links, stableId);
        if (!note || NoteContent::of(*note) != expected)
            return false;
        setNoteText(*note, typed, now);
        return true;
    };
    const bool saved = m_services.links.edit(LinkStore::Step::Ordinary, {}, change);
    m_saving = false;
    if (saved) {
        setNoteText(m_note, typed, now);
        m_stored = NoteContent::of(m_note);
        m_shown = typed;
        qCInfo(lcNotes, "Note saved, %lld characters", static_cast<long long>(m_stored.plain.size()));
    }
    storeChanged();
}

void NoteDocument::storeChanged()
{
    if (m_saving)
        return;
    const auto found = m_services.links.findByText(m_note.stableId);
    if (!found || found->type != LinkType::Note) {
        setState(State::Gone);
        return;
    }
    m_note = *found;
    emit noteChanged();
    takeStored(NoteContent::of(m_note));
}

void NoteDocument::takeStored(const NoteContent &stored)
{
    if (stored == m_stored) {
        setState(State::Normal);
    } else if (!hasTyped()) {
        m_stored = stored;
        emit replaceText(stored.decoded().text);
        editorFilled();
        setState(State::Normal);
        emit changedElsewhere();
    } else if (stored.decoded().text == m_editorText()) {
        m_stored = stored;
        editorFilled();
        setState(State::Normal);
    } else {
        m_theirs = stored;
        qCInfo(lcNotes, "Note changed elsewhere while it is being edited");
        setState(State::Conflict);
    }
}

void NoteDocument::resolve(Choice choice)
{
    if (m_state != State::Conflict)
        return;
    const RichText theirs = m_theirs.decoded().text;
    m_stored = m_theirs;
    setState(State::Normal);
    if (choice == Choice::UseTheirs) {
        emit replaceText(theirs);
        editorFilled();
        return;
    }
    if (choice == Choice::KeepBoth)
        emit replaceText(bothVersions(m_editorText(), theirs));
    save();
}

void NoteDocument::addAgain()
{
    if (m_state != State::Gone)
        return;
    const RichText typed = m_editorText();
    LinkItem again = m_note;
    if (typed != m_shown)
        setNoteText(again, typed, m_services.clock.now());
    m_stored = NoteContent::of(again);
    m_shown = typed;
    m_services.links.addLink(again);
    storeChanged();
}

void NoteDocument::close()
{
    save();
    // Only in saving may it come to light that another process has written,
    // and both texts have to be saved in their turn.
    for (int attempt = 0; m_state == State::Conflict && attempt < mostAttempts; ++attempt)
        resolve(Choice::KeepBoth);
    if (m_state == State::Gone && hasTyped()) {
        qCInfo(lcNotes, "Removed note has been edited since, adding it again");
        addAgain();
    }
}

void NoteDocument::setState(State state)
{
    // A conflict may change its other side while it lasts.
    if (m_state == state && state != State::Conflict)
        return;
    m_state = state;
    emit stateChanged();
}

} // namespace orvelle
