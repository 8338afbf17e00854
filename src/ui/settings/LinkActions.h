#pragma once

#include <QKeySequence>
#include <QObject>

class QAction;
class QMenu;
class QPoint;

namespace orvelle {

class ColorMenu;
class LinkCommands;
class LinkStore;
class LinkTreeView;

/// The commands as actions with their keys, each enabled when it can be done,
/// and the menus made of them. An action's objectName is its name here.
class LinkActions : public QObject
{
    Q_OBJECT

public:
    /// All of them outlive this. Shortcuts hold in `scope`, those that would
    /// disturb typing in the list only.
    LinkActions(LinkCommands &commands, LinkStore &links, LinkTreeView &tree, QWidget &scope);

    QAction *addLink, *addFile, *addFolder, *addGroup, *addNote;
    QAction *open, *reveal, *rename, *sort, *remove;
    QAction *moveUp, *moveDown, *indent, *outdent;
    QAction *undo, *redo;

    /// The groups to move the selection to, made anew each time it opens.
    QMenu *moveMenu() const { return m_moveMenu; }

    /// Enables what can be done to the present selection.
    void refresh();
    void showContextMenu(const QPoint &inTree);

private:
    enum class Keys { Everywhere, InTheList };
    QAction *make(const char *name, const char *symbol, const QString &title, void (LinkCommands::*run)(),
                  const QKeySequence &keys = {}, Keys where = Keys::InTheList);
    void fillMoveMenu();
    void fillContextMenu();

    LinkCommands &m_commands;
    LinkStore &m_links;
    LinkTreeView &m_tree;
    QWidget &m_scope;
    QMenu *m_moveMenu;
    ColorMenu *m_colors;
    QMenu *m_contextMenu;
};

} // namespace orvelle
