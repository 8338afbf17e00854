#include "ui/settings/QuickLaunchSlotList.h"

#include "base/DisplayTitle.h"
#include "base/Text.h"
#include "menubar/QuickLaunchManager.h"
#include "platform/Applications.h"
#include "ui/common/ApplicationIcons.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/KeptWindow.h"
#include "ui/common/PlainToolTip.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int iconSide = 24;
constexpr int rowPadding = 6;

/// The desktop file among what is dragged; empty without one.
QString desktopFileOf(const QMimeData &data)
{
    for (const QUrl &url : data.urls()) {
        if (url.isLocalFile() && url.path().endsWith(u".desktop"))
            return url.toLocalFile();
    }
    return {};
}

} // namespace

QuickLaunchSlotList::QuickLaunchSlotList(QuickLaunchManager &manager, const Applications &applications, QWidget *parent)
    : QListWidget(parent), m_manager(manager), m_applications(applications)
{
    setObjectName(u"quickLaunchSlots"_s);
    setAccessibleName(text("quicklaunch.slots"_text));
    setIconSize({iconSide, iconSide});
    setUniformItemSizes(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::CopyAction); // the row itself stays: only contents change places
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    followSelection(this);
    refresh();
    setCurrentRow(0);
}

QSize QuickLaunchSlotList::sizeHint() const
{
    return {QListWidget::sizeHint().width(),
            QuickLaunchManager::maxSlots * (iconSide + 2 * rowPadding) + 2 * frameWidth()};
}

void QuickLaunchSlotList::refresh()
{
    const int selected = currentRow();
    // A button for the selected row that is disabled for a moment loses the focus.
    const QSignalBlocker untilSelected(this);
    clear();
    const QColor quiet = readable(palette().color(QPalette::Mid), palette().color(QPalette::Base),
                                  palette().color(QPalette::Text), textContrast(palette()));
    for (const auto &app : m_manager.apps()) {
        auto *item = new QListWidgetItem(this);
        item->setSizeHint({0, iconSide + 2 * rowPadding});
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled);
        if (!app) {
            item->setText(text("quicklaunch.empty"_text));
            item->setIcon(symbolIcon(u"plus"_s, quiet));
            item->setForeground(quiet);
            continue;
        }
        const auto found = m_applications.find(app->path, app->bundleIdentifier.value_or(QString()));
        item->setText(displayTitle(found ? found->name : app->name));
        item->setIcon(found ? applicationIcon(found->icon) : symbolIcon(u"exclamationmark.triangle.fill"_s, quiet));
        item->setToolTip(plainToolTip(found ? found->path : text("quicklaunch.gone"_text)));
        if (!found) {
            item->setForeground(quiet);
            item->setData(Qt::AccessibleDescriptionRole, text("quicklaunch.gone"_text));
        }
    }
    setCurrentRow(selected);
}

void QuickLaunchSlotList::moveSelected(int step)
{
    const int from = currentRow();
    const int to = from + step;
    if (from < 0 || to < 0 || to >= count())
        return;
    setCurrentRow(to);
    m_manager.moveApp(from, to);
}

void QuickLaunchSlotList::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() == Qt::AltModifier && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down))
        moveSelected(event->key() == Qt::Key_Up ? -1 : 1);
    else if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        emit removeAsked();
    else
        QListWidget::keyPressEvent(event);
}

void QuickLaunchSlotList::startDrag(Qt::DropActions supportedActions)
{
    const KeptWindow kept(*this);
    QListWidget::startDrag(supportedActions);
}

bool QuickLaunchSlotList::accepts(const QDropEvent &event) const
{
    return event.source() == this || !desktopFileOf(*event.mimeData()).isEmpty();
}

void QuickLaunchSlotList::dragEnterEvent(QDragEnterEvent *event)
{
    if (accepts(*event))
        event->acceptProposedAction();
    else
        event->ignore();
}

void QuickLaunchSlotList::dragMoveEvent(QDragMoveEvent *event)
{
    QListWidget::dragMoveEvent(event); // marks the row
    if (accepts(*event) && itemAt(event->position().toPoint()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void QuickLaunchSlotList::dropEvent(QDropEvent *event)
{
    const QListWidgetItem *target = itemAt(event->position().toPoint());
    setState(NoState); // the view's own drop, which ends the drag, is not called
    viewport()->update();
    if (!target || !accepts(*event))
        return;
    const int slot = row(target);
    const int from = currentRow();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    setCurrentRow(slot);
    if (event->source() == this)
        m_manager.moveApp(from, slot);
    else
        emit fileDropped(slot, desktopFileOf(*event->mimeData()));
}

} // namespace orvelle
