#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QWidget>

class QAction;
class QStackedWidget;
class QToolButton;

namespace orvelle {

class LinkTreeModel;
class LinkTreeView;
class NoticeBar;

/// The list of links with what can be done to them, and the messages about
/// the list as a whole.
class LinksSection : public QWidget
{
    Q_OBJECT

public:
    explicit LinksSection(const SettingsServices &services, QWidget *parent = nullptr);

private:
    QAction *makeAction(const QString &name, const QString &symbol, const QString &title, void (LinksSection::*run)());
    void makeActions();
    QWidget *makeEmptyState();
    QWidget *makeButtonBar();
    QToolButton *makeButton(QAction *action, bool withTitle);

    void addLink();
    void addNote();
    void openSelected();
    void renameSelected();
    void removeSelected();
    void undo();
    void redo();

    void refresh();
    void refreshActions();
    void showRescuedData();
    void restoreRescued(const QString &key);

    const SettingsServices &m_services;
    LinkTreeModel *m_model;
    LinkTreeView *m_tree;
    QStackedWidget *m_stack;
    NoticeBar *m_rescueNotice;
    NoticeBar *m_notice;
    QAction *m_addLink = nullptr;
    QAction *m_addNote = nullptr;
    QAction *m_open = nullptr;
    QAction *m_rename = nullptr;
    QAction *m_remove = nullptr;
    QAction *m_undo = nullptr;
    QAction *m_redo = nullptr;
    bool m_rescueDismissed = false;
};

} // namespace orvelle
