#include "ui/notes/NoteEditors.h"

#include "links/LinkStore.h"
#include "ui/notes/NoteEditorWindow.h"

#include <algorithm>

namespace orvelle {

namespace {

/// A title bar's height, so that no editor hides another.
constexpr int cascadeStep = 28;

} // namespace

NoteEditors::NoteEditors(const NoteEditorServices &services) : m_services(services) {}

NoteEditors::~NoteEditors()
{
    for (const QPointer<NoteEditorWindow> &window : std::as_const(m_windows)) {
        if (window)
            window->close();
        delete window.data();
    }
}

NoteEditorWindow *NoteEditors::open(const QUuid &noteId)
{
    const auto note = m_services.links.find(noteId);
    if (!note || note->type != LinkType::Note)
        return nullptr;
    m_windows.removeIf([](const auto &entry) { return entry.value().isNull(); });
    QPointer<NoteEditorWindow> &window = m_windows[note->stableId];
    if (!window) {
        window = new NoteEditorWindow(m_services, *note);
        // One never opened is placed by the window manager.
        if (window->testAttribute(Qt::WA_Moved))
            moveClear(*window);
    }
    if (window->isMinimized())
        window->showNormal();
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

void NoteEditors::moveClear(QWidget &window) const
{
    const auto isTaken = [this, &window](const QPoint &place) {
        return std::ranges::any_of(m_windows, [&](const QPointer<NoteEditorWindow> &other) {
            return other && other != &window && other->isVisible() && other->pos() == place;
        });
    };
    QPoint place = window.pos();
    while (isTaken(place))
        place += QPoint(cascadeStep, cascadeStep);
    if (place != window.pos())
        window.move(place);
}

void NoteEditors::finishAll()
{
    for (const QPointer<NoteEditorWindow> &window : std::as_const(m_windows)) {
        if (window)
            window->finish();
    }
}

} // namespace orvelle
