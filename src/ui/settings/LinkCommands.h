#pragma once

#include "links/LinkEditing.h"
#include "ui/settings/SettingsWindow.h"

#include <QObject>
#include <QUrl>

#include <optional>

class QMimeData;

namespace orvelle {

class LinkTreeView;

/// What the settings do with the selected links. Each change is one undo step;
/// what came of it, or why it was refused, is said by said().
class LinkCommands : public QObject
{
    Q_OBJECT

public:
    using Group = std::optional<QUuid>;

    /// Both outlive this.
    LinkCommands(const SettingsServices &services, LinkTreeView &tree, QObject *parent = nullptr);

    void addLink();
    void addNote();
    void addGroup();
    /// Asks for files, or for a folder, and adds them.
    void addFiles();
    void addFolder();
    /// Adds what another program offers; documents of ours are opened instead.
    void addDropped(const QMimeData &data, const Group &group, const std::optional<qsizetype> &at);

    void open();
    void reveal();
    void rename();
    void remove();
    void undo();
    void redo();

    void moveUp() { moveAmongSiblings(-1); }
    void moveDown() { moveAmongSiblings(1); }
    void indent();
    void outdent();
    void sort();
    /// Moves all that is selected to the end of the group.
    void moveTo(const Group &group);
    /// Absent: the kind's own colour.
    void recolor(const std::optional<QString> &colorKey);

    bool canMove(int step) const;
    bool canIndent() const;
    bool canOutdent() const;
    bool canSort() const;
    bool canMoveTo(const LinkItem &group, int depth) const;

    void report(const std::optional<EditRefusal> &refusal);

signals:
    /// Something new is in the list and about to be selected.
    void added();
    /// A sentence for the status line; `undoable` when it can be taken back.
    void said(const QString &message, bool undoable);

private:
    struct Siblings {
        Group group;
        qsizetype first = 0;
        qsizetype last = 0;
        qsizetype count = 0;
    };
    /// Depth of the last group that takes a new item, and a group that things
    /// can still be put in.
    static constexpr int deepestForLinks = 1;
    static constexpr int deepestForGroups = 0;

    std::optional<Siblings> siblings() const;
    void moveAmongSiblings(int step);
    Group groupForNew(int deepest) const;
    void choosePaths(bool folder);
    void addPaths(const QStringList &paths);
    std::optional<LinkItem> linkTo(const QString &text, const QString &name) const;
    void addTexts(const QStringList &texts, const QString &title, const Group &group,
                  const std::optional<qsizetype> &at);
    bool insert(const LinkList &items, const Group &group, const std::optional<qsizetype> &at);
    QUuid neighbourOfSelection() const;

    const SettingsServices &m_services;
    LinkTreeView &m_tree;
};

} // namespace orvelle
