#pragma once

#include "ui/settings/LinkWindowState.h"
#include "ui/settings/SettingsWindow.h"

#include <QWidget>

#include <memory>

class QAction;
class QLabel;
class QLineEdit;
class QSplitter;
class QStackedWidget;
class QToolButton;

namespace orvelle {

class LinkActions;
class LinkCommands;
class LinkEditor;
class LinkPathChecker;
class LinkTreeModel;
class LinkTreeView;
class NoticeBar;
class Timer;

/// The list of links with its search field, the editor of what is selected,
/// the bar of what can be done, and the messages about the list as a whole.
class LinksSection : public QWidget
{
    Q_OBJECT

public:
    explicit LinksSection(const SettingsServices &services, QWidget *parent = nullptr);
    ~LinksSection() override;

protected:
    void hideEvent(QHideEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *makeTopRow();
    QWidget *makeSplitter();
    QWidget *makeEmptyState();
    QWidget *makeNoMatchState();
    QToolButton *makeButton(QAction *action, bool withTitle);
    QWidget *makeButtonBar();
    void connectAll();

    void search(const QString &text);
    void selectionChanged();
    void say(const QString &message, bool undoable);
    void refresh();
    void showPage();
    void keepState();
    void keepStateSoon();
    void showRescuedData();
    void restoreRescued(const QString &key);

    const SettingsServices &m_services;
    LinkWindowState m_state;
    LinkPathChecker *m_paths;
    LinkTreeModel *m_model;
    // In the order of the Tab key.
    QLineEdit *m_search;
    LinkTreeView *m_tree;
    LinkCommands *m_commands;
    LinkActions *m_actions;
    QStackedWidget *m_stack;
    QLabel *m_noMatch = nullptr;
    LinkEditor *m_editor;
    QSplitter *m_splitter;
    NoticeBar *m_rescueNotice;
    NoticeBar *m_notice;
    std::unique_ptr<Timer> m_keepTimer;
    bool m_rescueDismissed = false;
};

} // namespace orvelle
