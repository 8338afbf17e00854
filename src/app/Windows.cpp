#include "app/Windows.h"

#include "ui/notes/NoteEditorWindow.h"

#include <QApplication>

namespace orvelle {

namespace {

void present(QWidget *window)
{
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace

Windows::Windows(Services services) : m_services(std::move(services)), m_notes(m_services.notes) {}

Windows::~Windows()
{
    delete m_settings;
    delete m_quickAdd;
    delete m_customTimer;
}

void Windows::openSettings()
{
    if (!m_settings)
        m_settings = new SettingsWindow(m_services.settings(*this));
    present(m_settings);
}

void Windows::openSyncSettings()
{
    openSettings();
    m_settings->showTab(QStringLiteral("sync"));
}

void Windows::openQuickAdd(const std::optional<QUuid> &preselectedGroup)
{
    if (!m_quickAdd)
        m_quickAdd = new QuickAddPanel(m_services.quickAdd, preselectedGroup);
    else
        m_quickAdd->selectGroup(preselectedGroup);
    present(m_quickAdd);
}

void Windows::openQuickAdd(const QString &address)
{
    openQuickAdd(std::nullopt);
    if (!address.isEmpty())
        m_quickAdd->setAddress(address);
}

void Windows::openNoteEditor(const QUuid &noteId)
{
    if (NoteEditorWindow *window = m_notes.open(noteId))
        present(window);
}

void Windows::openTimerCustom()
{
    if (!m_customTimer)
        m_customTimer = new CustomTimerView(m_services.startTimer, {});
    present(m_customTimer);
}

void Windows::closeSettings()
{
    if (m_settings)
        m_settings->close();
}

void Windows::saveTyped()
{
    m_notes.finishAll();
    if (m_settings)
        m_settings->commitTyped();
}

void Windows::bringToFront()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() != Qt::Popup && window->windowType() != Qt::ToolTip) {
            window->raise();
            window->activateWindow();
        }
    }
}

} // namespace orvelle
