#pragma once

#include "sync/CloudSync.h"
#include "ui/settings/SettingsWindow.h"

#include <QWidget>

class QBoxLayout;
class QCheckBox;
class QLabel;
class QPushButton;

namespace orvelle {

class NoticeBar;
class SyncControl;
class SyncPlaceForm;

/// Keeping several machines in step: the switch, what goes on, where the
/// document is kept, how it is protected. Follows the synchronisation.
class SyncSection : public QWidget
{
    Q_OBJECT

public:
    /// `services.sync` is there.
    explicit SyncSection(const SettingsServices &services, QWidget *parent = nullptr);

private:
    using Outcome = Result<SyncResult, CloudSyncError>;

    void addHead(QBoxLayout *column);
    void addState(QBoxLayout *column);
    void addProtection(QBoxLayout *column);
    void connectControls();

    void refresh();
    void refreshState(const SyncStatus &status);
    void refreshNotice(const SyncStatus &status);
    void refreshEncryption(const SyncStatus &status);
    void setBusy(bool busy);

    void testPlace();
    void configure();
    void syncNow();
    void askToLoad();
    void load();
    void showHeldBack();
    void askForPassphrase();
    void askToRemoveEncryption();
    /// Runs when something ended: says `success` quietly, or why not.
    CloudSync::Done report(const QString &success);
    void fail(const QString &sentence);

    const SettingsServices &m_services;
    SyncControl &m_sync;
    QCheckBox *m_autoSync;
    QLabel *m_stateIcon;
    QLabel *m_state;
    QLabel *m_history;
    QPushButton *m_now;
    QPushButton *m_load;
    NoticeBar *m_notice;
    SyncPlaceForm *m_form;
    QWidget *m_protection;
    QCheckBox *m_guard;
    QLabel *m_encryption;
    QPushButton *m_encrypt;
    QPushButton *m_decrypt;
    bool m_busy = false;
};

} // namespace orvelle
