#include "ui/settings/LinkActions.h"

#include "base/DisplayTitle.h"
#include "base/Text.h"
#include "links/LinkStore.h"
#include "ui/common/Icons.h"
#include "ui/common/LinkIconView.h"
#include "ui/settings/LinkColorMenu.h"
#include "ui/settings/LinkCommands.h"
#include "ui/settings/LinkTreeView.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenu>

namespace orvelle {

namespace {

/// In a menu, which becomes as wide as its longest title.
constexpr qsizetype longestTitle = 80;

QString indented(const QString &name, int depth)
{
    // A lone ampersand would become a key.
    return QString(depth * 5, u' ') + displayTitle(name, longestTitle).replace(u'&', QStringLiteral("&&"));
}

} // namespace

LinkActions::LinkActions(LinkCommands &commands, LinkStore &links, LinkTreeView &tree, QWidget &scope)
    : QObject(&scope),
      m_commands(commands),
      m_links(links),
      m_tree(tree),
      m_scope(scope),
      m_moveMenu(new QMenu(&tree)),
      m_colors(new LinkColorMenu(&tree)),
      m_contextMenu(new QMenu(&tree))
{
    using C = LinkCommands;
    using K = QKeySequence;
    const bool rightToLeft = QGuiApplication::layoutDirection() == Qt::RightToLeft;
    const Qt::Key inwards = rightToLeft ? Qt::Key_Left : Qt::Key_Right;
    const Qt::Key outwards = rightToLeft ? Qt::Key_Right : Qt::Key_Left;
    addLink = make("addLink", "plus", text("settings.addLink"_text), &C::addLink, K::New, Keys::Everywhere);
    addFile = make("addFile", "doc.badge.plus", text("settings.addFile"_text), &C::addFiles);
    addFolder = make("addFolder", "folder.badge.plus", text("settings.addFolder"_text), &C::addFolder);
    addGroup = make("addGroup", "rectangle.stack.badge.plus", text("settings.addGroup"_text), &C::addGroup,
                    K(Qt::CTRL | Qt::Key_G), Keys::Everywhere);
    addNote = make("addNote", "note.text.badge.plus", text("settings.addNote"_text), &C::addNote,
                   K(Qt::CTRL | Qt::SHIFT | Qt::Key_N), Keys::Everywhere);
    open = make("open", "arrow.up.forward.square", text("settings.open"_text), &C::open, K::Open, Keys::Everywhere);
    reveal = make("reveal", "folder", text("settings.reveal"_text), &C::reveal);
    rename = make("rename", "pencil", text("settings.rename"_text), &C::rename, K(Qt::Key_F2));
    sort = make("sort", "textformat.abc", text("edit.sortAlphabetically"_text), &C::sort);
    remove = make("remove", "trash", text("settings.remove"_text), &C::remove, K::Delete);
    moveUp = make("moveUp", "arrow.up", text("settings.moveUp"_text), &C::moveUp, K(Qt::ALT | Qt::Key_Up));
    moveDown = make("moveDown", "arrow.down", text("settings.moveDown"_text), &C::moveDown, K(Qt::ALT | Qt::Key_Down));
    indent = make("indent", "arrow.right", text("settings.indent"_text), &C::indent, K(Qt::ALT | inwards));
    outdent = make("outdent", "arrow.left", text("settings.outdent"_text), &C::outdent, K(Qt::ALT | outwards));
    undo = make("undo", "arrow.uturn.backward", text("settings.undo"_text), &C::undo, K::Undo, Keys::Everywhere);
    redo = make("redo", "arrow.uturn.forward", text("settings.redo"_text), &C::redo, {}, Keys::Everywhere);

    redo->setShortcuts({K(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), K(Qt::CTRL | Qt::Key_Y)});

    m_moveMenu->setTitle(text("settings.moveTo"_text));
    m_moveMenu->setIcon(symbolIcon(QStringLiteral("folder.fill")));
    m_colors->setTitle(text("settings.color"_text));
    m_colors->setIcon(symbolIcon(QStringLiteral("paintbrush.fill")));
    connect(m_moveMenu, &QMenu::aboutToShow, this, &LinkActions::fillMoveMenu);
    connect(m_colors, &ColorMenu::chosen, this,
            [this](const QString &key) { m_commands.recolor(key.isEmpty() ? std::nullopt : std::optional(key)); });
    fillContextMenu();
    connect(&m_tree, &QWidget::customContextMenuRequested, this, &LinkActions::showContextMenu);
}

QAction *LinkActions::make(const char *name, const char *symbol, const QString &title, void (LinkCommands::*run)(),
                           const QKeySequence &keys, Keys where)
{
    auto *action = new QAction(symbolIcon(QString::fromLatin1(symbol)), title, &m_scope);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(keys);
    if (where == Keys::InTheList) {
        action->setShortcutContext(Qt::WidgetShortcut);
        m_tree.addAction(action);
    } else {
        m_scope.addAction(action);
    }
    connect(action, &QAction::triggered, &m_commands, run);
    return action;
}

void LinkActions::fillContextMenu()
{
    m_contextMenu->addActions({open, reveal});
    m_contextMenu->addSeparator();
    m_contextMenu->addAction(rename);
    m_contextMenu->addMenu(m_colors);
    m_contextMenu->addMenu(m_moveMenu);
    QMenu *place =
        m_contextMenu->addMenu(symbolIcon(QStringLiteral("arrow.up.arrow.down")), text("settings.move"_text));
    place->addActions({moveUp, moveDown, outdent, indent});
    m_contextMenu->addAction(sort);
    m_contextMenu->addSeparator();
    m_contextMenu->addActions({addLink, addFile, addFolder, addGroup, addNote});
    m_contextMenu->addSeparator();
    m_contextMenu->addAction(remove);
}

void LinkActions::showContextMenu(const QPoint &inTree)
{
    refresh();
    // By the menu key the row may lie anywhere.
    const bool onRow = m_tree.indexAt(inTree).isValid();
    QPoint at = m_tree.viewport()->mapToGlobal(inTree);
    if (!onRow && m_tree.currentIndex().isValid() && inTree == m_tree.viewport()->rect().center())
        at = m_tree.viewport()->mapToGlobal(m_tree.visualRect(m_tree.currentIndex()).center());
    m_contextMenu->popup(at);
}

void LinkActions::fillMoveMenu()
{
    m_moveMenu->clear();
    QAction *top = m_moveMenu->addAction(symbolIcon(QStringLiteral("tray.full.fill")), text("settings.topLevel"_text));
    connect(top, &QAction::triggered, this, [this] { m_commands.moveTo(std::nullopt); });
    m_moveMenu->addSeparator();
    for (const GroupAtDepth &entry : allGroups(m_links.links())) {
        const QIcon icon =
            symbolIcon(entry.group.sfSymbolName(), linkIconColor(entry.group, m_moveMenu->palette(), QPalette::Window));
        QAction *action = m_moveMenu->addAction(icon, indented(entry.group.name, entry.depth));
        action->setEnabled(m_commands.canMoveTo(entry.group, entry.depth));
        connect(action, &QAction::triggered, this, [this, id = entry.group.id] { m_commands.moveTo(id); });
    }
}

void LinkActions::refresh()
{
    const LinkItem *item = m_tree.selectedItem();
    const bool any = m_tree.selectionModel()->hasSelection();
    open->setEnabled(item && !item->isGroup());
    reveal->setEnabled(item && (item->type == LinkType::File || item->type == LinkType::Folder));
    rename->setEnabled(item);
    remove->setEnabled(any);
    sort->setEnabled(m_commands.canSort());
    moveUp->setEnabled(m_commands.canMove(-1));
    moveDown->setEnabled(m_commands.canMove(1));
    indent->setEnabled(m_commands.canIndent());
    outdent->setEnabled(m_commands.canOutdent());
    undo->setEnabled(m_links.canUndo());
    redo->setEnabled(m_links.canRedo());
    m_moveMenu->menuAction()->setEnabled(any);
    m_colors->menuAction()->setEnabled(any);
    m_colors->setCurrent(item ? item->customIconColor : std::nullopt);
}

} // namespace orvelle
