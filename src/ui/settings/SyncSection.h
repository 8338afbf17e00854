#pragma once

#include "sync/CloudSync.h"
#include "ui/settings/SettingsWindow.h"

#include <QPointer>
#include <QWidget>

class QBoxLayout;
class QCheckBox;
class QLabel;
class QPushButton;

namespace orvelle {

class NoticeBar;
class SyncControl;
class SyncPreviewView;
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
    void dropOvertakenSheet();
    void refreshEncryption(const SyncStatus &status);
    /// What the user waits for: one thing at a time, but a choice of the place
    /// ends the waiting for anything else.
    enum class Busy { No, Working, Choosing };
    /// What began; pass it to ended().
    int begin(Busy busy);
    /// False when something else began meanwhile: nobody waits any more.
    bool ended(int begun);

    void testPlace();
    void configure();
    void goOnWithPassphrase();
    void syncNow();
    void askToLoad();
    void load();
    void showHeldBack();
    void askForPassphrase();
    void askToRemoveEncryption();
    /// Begins something. Runs when it ended: says `success` quietly, or why not.
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
    Busy m_busy = Busy::No;
    int m_begun = 0;
    QPointer<SyncPreviewView> m_heldSheet;
    QString m_heldShown;       ///< the version that the sheet is about
    bool m_setUpWaits = false; ///< for the passphrase of what was found at the new place
};

} // namespace orvelle
