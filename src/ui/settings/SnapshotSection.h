#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QWidget>

class QPushButton;
class QStackedWidget;
class QTreeView;

namespace orvelle {

class NoticeBar;
class SnapshotModel;
struct SnapshotInfo;

/// The snapshots of the tree: look into one, make one the tree again. A new
/// one shows as soon as the tree has changed.
class SnapshotSection : public QWidget
{
    Q_OBJECT

public:
    explicit SnapshotSection(const SettingsServices &services, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QTreeView *makeList();
    QWidget *makeButtons();
    void scheduleReload();
    void reload();
    void refreshButtons();
    /// Null when none is selected.
    const SnapshotInfo *selected() const;
    void preview();
    void restoreSelected();
    void restore(const SnapshotInfo &snapshot);
    void offerUndo(const QString &message);
    void sayWhyNot(const QString &title, const QString &why);

    const SettingsServices &m_services;
    SnapshotModel *m_model;
    QTreeView *m_list;
    QStackedWidget *m_stack;
    NoticeBar *m_notice;
    QPushButton *m_preview;
    QPushButton *m_restore;
    bool m_outdated = true;
    bool m_restoring = false;
};

} // namespace orvelle
