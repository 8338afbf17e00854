#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QList>
#include <QUuid>
#include <QWidget>

#include <optional>

class QCheckBox;
class QLabel;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace orvelle {

class LinkActions;
class LinkColorMenu;
class LinkCommands;
class LinkField;
class LinkIconChooser;
class LinkIconView;
class LinkPathChecker;
class PageScroll;

/// What can be changed about the selected items, beside the list. Each change
/// is one undo step; several items are changed together. Text goes over on
/// Enter or when the field is left.
class LinkEditor : public QWidget
{
    Q_OBJECT

public:
    /// All of them outlive the editor.
    LinkEditor(const SettingsServices &services, LinkCommands &commands, LinkActions &actions,
               const LinkPathChecker &paths, QWidget *parent = nullptr);

    /// Shows these items, after handing over what was typed about the others.
    void setItems(const QList<QUuid> &ids);
    /// Hands over what is still being typed.
    void commit();
    /// What is in the fields after commit() because it cannot be stored, and
    /// would be lost with them; absent without such.
    std::optional<QString> unstored() const;
    /// Shows the field that holds it, with the focus.
    void showUnstored();

protected:
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void reserveWidth();
    QWidget *makeHeader();
    void addFields(QVBoxLayout &column);
    void addLooks(QVBoxLayout &column);
    void addButtons(QVBoxLayout &column);
    QToolButton *makeMenuButton(const char *name);

    void refresh();
    void showNothing();
    void showHeader();
    void showFields();
    void showLooks();
    void showButtons();
    bool isBeingTyped() const;
    void showProblem(const QString &sentence);

    bool commitName(const QString &name);
    bool commitPath(const QString &path);
    void choosePath();
    void chooseIcon();
    void takeIcon(const QString &symbol);
    void takeColoredInMenu();
    bool change(const std::function<void(LinkItem &)> &how);

    const SettingsServices &m_services;
    LinkCommands &m_commands;
    LinkActions &m_actions;
    const LinkPathChecker &m_paths;
    QList<QUuid> m_ids;
    LinkList m_items; ///< as they were shown last
    bool m_gone = false;

    QLabel *m_nothing;
    QWidget *m_form;
    PageScroll *m_scroll = nullptr;
    LinkIconView *m_icon = nullptr;
    QLabel *m_kind = nullptr;
    QLabel *m_detail = nullptr;
    QLabel *m_nameLabel = nullptr;
    LinkField *m_name = nullptr;
    QLabel *m_pathLabel = nullptr;
    LinkField *m_path = nullptr;
    QToolButton *m_choose = nullptr;
    QLabel *m_problem = nullptr;
    QLabel *m_iconLabel = nullptr;
    QToolButton *m_iconButton = nullptr;
    QLabel *m_colorLabel = nullptr;
    QToolButton *m_colorButton = nullptr;
    LinkColorMenu *m_colors = nullptr;
    QCheckBox *m_colored = nullptr;
    QPushButton *m_sort = nullptr;
    QPushButton *m_open = nullptr;
    QPushButton *m_reveal = nullptr;
    QPushButton *m_move = nullptr;
    QPushButton *m_remove = nullptr;
    LinkIconChooser *m_chooser = nullptr;
};

} // namespace orvelle
