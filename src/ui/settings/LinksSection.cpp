#include "ui/settings/LinksSection.h"

#include "base/Text.h"
#include "links/LinkStore.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/EmptyState.h"
#include "ui/common/Icons.h"
#include "ui/common/NoticeBar.h"
#include "ui/settings/KeyboardSplitter.h"
#include "ui/settings/LinkActions.h"
#include "ui/settings/LinkCommands.h"
#include "ui/settings/LinkEditor.h"
#include "ui/settings/LinkPathChecker.h"
#include "ui/settings/LinkTreeModel.h"
#include "ui/settings/LinkTreeView.h"
#include "ui/settings/Sections.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

using namespace std::chrono_literals;

/// Several groups opened in a row are one write.
constexpr auto keepDelay = 2s;

enum Page { ListPage, EmptyPage, NoMatchPage };

} // namespace

LinksSection::LinksSection(const SettingsServices &services, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_state(services.defaults, services.debugMode),
      m_paths(new LinkPathChecker(services.links, this)),
      m_model(new LinkTreeModel(services.links, *m_paths, this)),
      m_search(new QLineEdit(this)),
      m_tree(new LinkTreeView(*m_model, services.links, this)),
      m_commands(new LinkCommands(services, *m_tree, this)),
      m_actions(new LinkActions(*m_commands, services.links, *m_tree, *this)),
      m_stack(new QStackedWidget(this)),
      m_editor(new LinkEditor(services, *m_commands, *m_actions, *m_paths, this)),
      m_splitter(new KeyboardSplitter(text("settings.splitter"_text), this)),
      m_rescueNotice(new NoticeBar(this)),
      m_notice(new NoticeBar(this))
{
    m_stack->setObjectName(QStringLiteral("linkPages"));
    m_stack->addWidget(m_tree);
    m_stack->addWidget(makeEmptyState());
    m_stack->addWidget(makeNoMatchState());

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(8);
    column->addWidget(makeTopRow());
    column->addWidget(m_rescueNotice);
    column->addWidget(makeSplitter(), 1);
    column->addWidget(m_notice);
    column->addWidget(makeButtonBar());
    connectAll();
    m_tree->setOpenGroups(m_state.openGroups());
    refresh();
}

LinksSection::~LinksSection() = default;

void LinksSection::connectAll()
{
    LinkStore &links = m_services.links;
    connect(m_search, &QLineEdit::textChanged, this, &LinksSection::search);
    connect(m_tree, &LinkTreeView::selectedItemChanged, this, &LinksSection::selectionChanged);
    connect(m_tree, &LinkTreeView::openRequested, m_commands, &LinkCommands::open);
    connect(m_tree, &LinkTreeView::openGroupsChanged, this, &LinksSection::keepStateSoon);
    connect(
        m_tree, &LinkTreeView::dropped, m_commands,
        [this](const QMimeData *mime, const auto &group, const auto &at) { m_commands->addDropped(*mime, group, at); });
    connect(m_tree, &LinkTreeView::moveRefused, m_commands, &LinkCommands::report);
    connect(m_splitter, &QSplitter::splitterMoved, this, &LinksSection::keepStateSoon);
    connect(m_commands, &LinkCommands::said, this, &LinksSection::say);
    connect(m_commands, &LinkCommands::added, m_search, &QLineEdit::clear);
    connect(m_paths, &LinkPathChecker::changed, m_tree->viewport(), qOverload<>(&QWidget::update));
    connect(&links, &LinkStore::linksChanged, this, &LinksSection::refresh);
    connect(&links, &LinkStore::historyChanged, m_actions, &LinkActions::refresh);
    connect(&links, &LinkStore::undecodableDataSetAside, this, [this] {
        m_rescueDismissed = false;
        refresh();
    });
    connect(m_rescueNotice, &NoticeBar::dismissed, this, [this] { m_rescueDismissed = true; });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        m_search->setFocus(Qt::ShortcutFocusReason);
        m_search->selectAll();
    });
}

QWidget *LinksSection::makeTopRow()
{
    m_search->setObjectName(QStringLiteral("linkSearch"));
    m_search->setPlaceholderText(text("settings.search"_text));
    m_search->setAccessibleName(text("settings.search"_text));
    addClearButton(m_search);
    m_search->addAction(symbolIcon(QStringLiteral("magnifyingglass")), QLineEdit::LeadingPosition)
        ->setText(text("settings.search"_text));
    m_search->setMaximumWidth(280);
    m_search->installEventFilter(this);
    auto *top = new QWidget(this);
    auto *row = new QHBoxLayout(top);
    row->setContentsMargins({});
    row->addWidget(sectionTitle(text("settings.links"_text), top));
    row->addStretch(1);
    row->addWidget(m_search, 2);
    return top;
}

QWidget *LinksSection::makeSplitter()
{
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(8);
    m_splitter->addWidget(m_stack);
    m_splitter->addWidget(m_editor);
    m_splitter->setStretchFactor(0, 1);
    m_splitter->setStretchFactor(1, 0);
    m_splitter->setSizes({560, 280});
    setTabOrder(m_tree, m_splitter->handle(1));
    m_stack->setMinimumWidth(260);
    m_tree->setMinimumHeight(120);
    m_splitter->restoreState(m_state.splitter());
    return m_splitter;
}

QWidget *LinksSection::makeEmptyState()
{
    auto *empty = new EmptyState(QStringLiteral("link"), text("settings.empty.title"_text),
                                 text("settings.empty.message"_text), this);
    auto *button = new QPushButton(m_actions->addLink->icon(), m_actions->addLink->text(), empty);
    button->setObjectName(QStringLiteral("emptyAddLink"));
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, m_actions->addLink, &QAction::trigger);
    empty->addButton(button);
    return empty;
}

QWidget *LinksSection::makeNoMatchState()
{
    auto *none = new EmptyState(QStringLiteral("magnifyingglass"), text("settings.noMatch.title"_text),
                                text("settings.noMatch.message"_text), this);
    auto *button = new QPushButton(text("settings.noMatch.clear"_text), none);
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, [this] {
        m_search->clear();
        m_tree->setFocus();
    });
    none->addButton(button);
    return none;
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
    for (QAction *action : {m_actions->addLink, m_actions->addGroup, m_actions->addNote})
        row->addWidget(makeButton(action, true));
    for (QAction *action : {m_actions->addFile, m_actions->addFolder})
        row->addWidget(makeButton(action, false));
    row->addStretch(1);
    for (QAction *action : {m_actions->undo, m_actions->redo, m_actions->remove})
        row->addWidget(makeButton(action, false));
    return bar;
}

void LinksSection::search(const QString &text)
{
    m_tree->setSearch(text);
    showPage();
    selectionChanged();
}

void LinksSection::selectionChanged()
{
    m_actions->refresh();
    m_editor->setItems(m_tree->selectedIds());
}

/// What can be taken back is offered beside the list, all else is said in the
/// window's status line.
void LinksSection::say(const QString &message, bool undoable)
{
    if (undoable)
        m_notice->showNotice(message, {{text("settings.undo"_text), [this] { m_commands->undo(); }}});
    else
        SettingsWindow::showStatus(this, message);
}

void LinksSection::refresh()
{
    m_notice->hide();
    showPage();
    showRescuedData();
    m_actions->refresh();
}

void LinksSection::showPage()
{
    if (m_services.links.links().isEmpty())
        m_stack->setCurrentIndex(EmptyPage);
    else
        m_stack->setCurrentIndex(m_model->rowCount() == 0 ? NoMatchPage : ListPage);
    m_search->setEnabled(!m_services.links.links().isEmpty());
}

bool LinksSection::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_search || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool onward = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (onward && m_stack->currentIndex() == ListPage) {
        m_tree->setFocus(Qt::OtherFocusReason);
        // The row that the keys act on is a selected one.
        if (m_tree->selectedIds().isEmpty()) {
            const QModelIndex current = m_tree->currentIndex();
            m_tree->setCurrentIndex(current.isValid() ? current : m_model->index(0, 0));
        }
        return true;
    }
    if (key == Qt::Key_Escape && !m_search->text().isEmpty()) {
        m_search->clear();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void LinksSection::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_paths->recheck();
}

void LinksSection::hideEvent(QHideEvent *event)
{
    keepState();
    QWidget::hideEvent(event);
}

void LinksSection::keepStateSoon()
{
    if (!m_keepTimer)
        m_keepTimer = m_services.clock.singleShot(keepDelay, [this] { keepState(); });
}

void LinksSection::keepState()
{
    m_keepTimer.reset();
    m_state.keepOpenGroups(m_tree->openGroups());
    m_state.keepSplitter(m_splitter->saveState());
}

void LinksSection::showRescuedData()
{
    const QString newest = m_rescueDismissed ? QString() : m_services.links.rescuedDataKeys().value(0);
    if (newest.isEmpty()) {
        m_rescueNotice->hide();
        return;
    }
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
