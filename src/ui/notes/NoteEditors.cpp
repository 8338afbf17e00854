#include "ui/notes/NoteEditors.h"

#include "links/LinkStore.h"
#include "ui/notes/NoteEditorWindow.h"

namespace orvelle {

namespace {

/// Editors open a title bar's height apart, so that none hides another.
constexpr int cascadeStep = 28;

void moveBeside(QWidget &window, qsizetype openWindows)
{
    const int shift = static_cast<int>(openWindows) * cascadeStep;
    window.move(window.pos() + QPoint(shift, shift));
}

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
        // Without a remembered place the window manager finds a better one.
        if (m_windows.size() > 1 && window->testAttribute(Qt::WA_Moved))
            moveBeside(*window, m_windows.size() - 1);
    }
    if (window->isMinimized())
        window->showNormal();
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

void NoteEditors::saveAll()
{
    for (const QPointer<NoteEditorWindow> &window : std::as_const(m_windows)) {
        if (window)
            window->saveNow();
    }
}

} // namespace orvelle
