#include "ui/settings/LinksSection.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkStore.h"
#include "menubar/AppWindows.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "ui/common/EmptyState.h"
#include "ui/common/Icons.h"
#include "ui/common/NoticeBar.h"
#include "ui/settings/LinkTreeModel.h"
#include "ui/settings/LinkTreeView.h"

#include <QAction>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

/// Width of a name inside a message.
constexpr int longestName = 260;

} // namespace

LinksSection::LinksSection(const SettingsServices &services, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_model(new LinkTreeModel(services.links, this)),
      m_tree(new LinkTreeView(*m_model, this)),
      m_stack(new QStackedWidget(this)),
      m_rescueNotice(new NoticeBar(this)),
      m_notice(new NoticeBar(this))
{
    makeActions();
    m_stack->addWidget(m_tree);
    m_stack->addWidget(makeEmptyState());

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(8);
    column->addWidget(m_rescueNotice);
    column->addWidget(m_stack, 1);
    column->addWidget(m_notice);
    column->addWidget(makeButtonBar());

    connect(m_tree, &LinkTreeView::selectedItemChanged, this, &LinksSection::refreshActions);
    connect(m_tree, &LinkTreeView::openRequested, this, &LinksSection::openSelected);
    connect(&services.links, &LinkStore::linksChanged, this, &LinksSection::refresh);
    connect(&services.links, &LinkStore::historyChanged, this, &LinksSection::refreshActions);
    connect(&services.links, &LinkStore::undecodableDataSetAside, this, [this] {
        m_rescueDismissed = false;
        refresh();
    });
    connect(m_rescueNotice, &NoticeBar::dismissed, this, [this] { m_rescueDismissed = true; });
    refresh();
}

QAction *LinksSection::makeAction(const QString &name, const QString &symbol, const QString &title,
                                  void (LinksSection::*run)())
{
    auto *action = new QAction(symbolIcon(symbol), title, this);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, run);
    addAction(action);
    return action;
}

void LinksSection::makeActions()
{
    m_addLink = makeAction(QStringLiteral("addLink"), QStringLiteral("plus"), text("settings.addLink"_text),
                           &LinksSection::addLink);
    m_addNote = makeAction(QStringLiteral("addNote"), QStringLiteral("note.text.badge.plus"),
                           text("settings.addNote"_text), &LinksSection::addNote);
    m_open = makeAction(QStringLiteral("open"), QStringLiteral("arrow.up.forward.square"), text("settings.open"_text),
                        &LinksSection::openSelected);
    m_rename = makeAction(QStringLiteral("rename"), {}, text("settings.rename"_text), &LinksSection::renameSelected);
    m_remove = makeAction(QStringLiteral("remove"), QStringLiteral("trash"), text("settings.remove"_text),
                          &LinksSection::removeSelected);
    m_undo = makeAction(QStringLiteral("undo"), QStringLiteral("arrow.uturn.backward"), text("settings.undo"_text),
                        &LinksSection::undo);
    m_redo = makeAction(QStringLiteral("redo"), QStringLiteral("arrow.uturn.forward"), text("settings.redo"_text),
                        &LinksSection::redo);

    m_addLink->setShortcut(QKeySequence::New);
    m_addNote->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_N);
    m_open->setShortcut(QKeySequence::Open);
    m_undo->setShortcut(QKeySequence::Undo);
    m_redo->setShortcut(QKeySequence::Redo);
    // Only while the list has the focus: elsewhere these keys edit text.
    m_remove->setShortcut(QKeySequence::Delete);
    m_rename->setShortcut(Qt::Key_F2);
    for (QAction *action : {m_remove, m_rename}) {
        action->setShortcutContext(Qt::WidgetShortcut);
        removeAction(action);
    }
    m_tree->addActions({m_open, m_rename, m_remove});
}

QWidget *LinksSection::makeEmptyState()
{
    auto *empty = new EmptyState(QStringLiteral("link"), text("settings.empty.title"_text),
                                 text("settings.empty.message"_text), this);
    auto *button = new QPushButton(m_addLink->icon(), m_addLink->text(), empty);
    button->setObjectName(QStringLiteral("emptyAddLink"));
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, m_addLink, &QAction::trigger);
    empty->addButton(button);
    return empty;
}

QToolButton *LinksSection::makeButton(QAction *action, bool withTitle)
{
    auto *button = new QToolButton(this);
    button->setDefaultAction(action);
    button->setObjectName(action->objectName() + QStringLiteral("Button"));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setToolButtonStyle(withTitle ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
    button->setAccessibleName(action->text());
    return button;
}

QWidget *LinksSection::makeButtonBar()
{
    auto *bar = new QWidget(this);
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins({});
    row->setSpacing(4);
    row->addWidget(makeButton(m_addLink, true));
    row->addWidget(makeButton(m_addNote, true));
    row->addStretch(1);
    for (QAction *action : {m_open, m_remove, m_undo, m_redo})
        row->addWidget(makeButton(action, false));
    return bar;
}

void LinksSection::addLink()
{
    if (const auto group = m_tree->selectedGroup())
        m_services.windows.openQuickAdd(group);
    else
        emit m_services.notifications.openQuickAdd();
}

void LinksSection::addNote()
{
    const QUuid token = QUuid::createUuid();
    LinkItem note = LinkItem::make(text("note.defaultName"_text),
                                   QStringLiteral("quicknote://") + token.toString(QUuid::WithoutBraces).toUpper(),
                                   LinkType::Note, m_services.clock.now());
    note.customIconColor = QStringLiteral("yellow");
    const auto group = m_tree->selectedGroup();
    if (!group || !m_services.links.addLinkToGroup(note, *group))
        m_services.links.addLink(note);
    m_tree->selectItem(note.id);
    emit m_services.notifications.openNoteEditor(note.id);
}

void LinksSection::openSelected()
{
    const LinkItem *item = m_tree->selectedItem();
    if (!item || item->isGroup())
        return;
    if (item->type == LinkType::Note)
        emit m_services.notifications.openNoteEditor(item->id);
    else if (m_services.openLink)
        m_services.openLink(LinkItem(*item));
}

void LinksSection::renameSelected()
{
    m_tree->edit(m_tree->currentIndex().siblingAtColumn(LinkTreeModel::NameColumn));
}

void LinksSection::removeSelected()
{
    const LinkItem *item = m_tree->selectedItem();
    if (!item)
        return;
    const QString name = fontMetrics().elidedText(item->name, Qt::ElideMiddle, longestName);
    if (m_services.links.removeLink(QUuid(item->id))) {
        m_notice->showNotice(text("settings.removed %@"_text, name),
                             {{text("settings.undo"_text), [this] { undo(); }}});
    }
}

void LinksSection::undo()
{
    m_notice->hide();
    m_services.links.undo();
}

void LinksSection::redo()
{
    m_notice->hide();
    m_services.links.redo();
}

void LinksSection::refresh()
{
    m_stack->setCurrentIndex(m_services.links.links().isEmpty() ? 1 : 0);
    showRescuedData();
    refreshActions();
}

void LinksSection::refreshActions()
{
    const LinkItem *item = m_tree->selectedItem();
    m_open->setEnabled(item && !item->isGroup());
    m_rename->setEnabled(item);
    m_remove->setEnabled(item);
    m_undo->setEnabled(m_services.links.canUndo());
    m_redo->setEnabled(m_services.links.canRedo());
}

void LinksSection::showRescuedData()
{
    const QStringList keys = m_services.links.rescuedDataKeys();
    if (keys.isEmpty() || m_rescueDismissed) {
        m_rescueNotice->hide();
        return;
    }
    const QString newest = keys.constFirst();
    m_rescueNotice->showNotice(text("settings.rescued.message %@"_text, newest),
                               {{text("settings.rescued.restore"_text), [this, newest] { restoreRescued(newest); }}});
}

void LinksSection::restoreRescued(const QString &key)
{
    if (m_services.links.restoreRescuedData(key)) {
        m_rescueDismissed = true;
        m_rescueNotice->hide();
        return;
    }
    m_services.alerts.show({Alert::Style::Warning,
                            text("settings.rescued.failedTitle"_text),
                            text("settings.rescued.failedMessage %@"_text, key),
                            {text("sheet.ok"_text)}});
}

} // namespace orvelle
