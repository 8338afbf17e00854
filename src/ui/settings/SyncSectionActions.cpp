#include "base/Text.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "platform/Alerts.h"
#include "sync/SyncSetup.h"
#include "ui/common/SyncPreviewView.h"
#include "ui/common/SyncSummary.h"
#include "ui/settings/PassphraseDialog.h"
#include "ui/settings/Sections.h"
#include "ui/settings/SyncPlaceForm.h"
#include "ui/settings/SyncSection.h"

#include <QLocale>
#include <QPointer>

// What the buttons of the section do.
namespace orvelle {

void SyncSection::testPlace()
{
    const SyncPlace place = m_form->place();
    if (const auto valid = m_sync.checkedPlace(place); !valid)
        return m_form->showOutcome(false, syncPlaceRefusalText(valid.error()));
    m_form->showOutcome(true, {});
    m_sync.testPlace(
        place, m_form->password(),
        [self = QPointer<SyncSection>(this), begun = begin(Busy::Working)](const std::optional<QString> &failure) {
            if (!self || !self->ended(begun))
                return;
            self->m_form->showOutcome(!failure, failure.value_or(text("cloudSync.testGood"_text)));
        });
}

void SyncSection::configure()
{
    const SyncPlace place = m_form->place();
    if (const auto valid = m_sync.checkedPlace(place); !valid)
        return m_form->showOutcome(false, syncPlaceRefusalText(valid.error()));
    const auto ask = [&alerts = m_services.alerts](const std::function<void(ConfigureCloudSyncResult)> &answer) {
        Alert alert;
        alert.message = text("cloudSync.configureChoice.title"_text);
        alert.informativeText = text("cloudSync.configureChoice.message"_text);
        alert.buttons = {text("cloudSync.configureChoice.useExisting"_text),
                         text("cloudSync.configureChoice.createNew"_text), text("sheet.cancel"_text)};
        alerts.show(alert, [answer](int button) { answer(static_cast<ConfigureCloudSyncResult>(button)); });
    };
    const bool leaves = place.kind == SyncPlace::Kind::None;
    m_setUpWaits = false;
    configureCloudSync(m_sync, place, m_form->password(), ask,
                       [self = QPointer<SyncSection>(this), leaves,
                        begun = begin(Busy::Choosing)](const Result<ConfigureCloudSyncResult, QString> &result) {
                           if (!self || !self->ended(begun))
                               return;
                           if (!result && self->m_sync.status().state == SyncStatus::State::NeedsPassphrase)
                               return self->goOnWithPassphrase();
                           if (!result)
                               return self->fail(text("error.cloudSyncSave %@"_text, result.error()));
                           self->m_form->showPlace(self->m_sync.place());
                           if (*result != ConfigureCloudSyncResult::Cancelled && !leaves)
                               self->m_form->showOutcome(true, text("cloudSync.saveSuccess"_text));
                       });
}

/// The question what to do with the document comes when it can be read.
void SyncSection::goOnWithPassphrase()
{
    m_setUpWaits = true;
    m_form->showPlace(m_sync.place());
    askForPassphrase();
}

void SyncSection::syncNow()
{
    m_sync.syncNow([self = QPointer<SyncSection>(this), begun = begin(Busy::Working)](const Outcome &outcome) {
        if (!self || !self->ended(begun))
            return;
        if (!outcome)
            return self->fail(text("error.cloudSyncSave %@"_text, outcome.error().description));
        const QString losses = syncLossLine(*outcome);
        SettingsWindow::showStatus(self, text("cloudSync.saveSuccess"_text) +
                                             (losses.isEmpty() ? QString() : QStringLiteral(" · ") + losses));
    });
}

void SyncSection::askToLoad()
{
    Alert alert{Alert::Style::Warning,
                text("cloudSync.loadConfirmTitle"_text),
                text("cloudSync.loadConfirmMessage"_text),
                {text("cloudSync.loadConfirmAction"_text), text("sheet.cancel"_text)}};
    alert.defaultButton = 1;
    m_services.alerts.show(alert, [self = QPointer<SyncSection>(this)](int button) {
        if (self && button == 0)
            self->load();
    });
}

void SyncSection::load()
{
    m_sync.loadFromCloud([self = QPointer<SyncSection>(this), begun = begin(Busy::Working)](const Outcome &outcome) {
        if (!self || !self->ended(begun))
            return;
        if (!outcome)
            return self->fail(text("error.cloudSyncLoad %@"_text, outcome.error().description));
        const qint64 count = countAll(self->m_services.links.links());
        self->m_services.alerts.show({Alert::Style::Information,
                                      text("cloudSync.resultTitle"_text),
                                      text("cloudSync.loadSuccess %@"_text, QLocale().toString(count)),
                                      {text("sheet.ok"_text)}});
    });
}

void SyncSection::showHeldBack()
{
    const auto held = m_sync.heldBack();
    if (!held)
        return;
    auto *sheet = new SyncPreviewView(held->analysis, SyncPreviewView::Purpose::Decide, window());
    m_heldSheet = sheet;
    m_heldShown = held->version;
    // What is decided is not overtaken by its own end.
    connect(sheet, &QDialog::accepted, this, [this] {
        m_heldSheet.clear();
        m_sync.acceptHeldBack();
    });
    connect(sheet, &SyncPreviewView::keepHere, this, [this] {
        m_heldSheet.clear();
        m_sync.rejectHeldBack();
    });
    sheet->open();
}

/// What is decided is what is seen. The notice offers the other change.
void SyncSection::dropOvertakenSheet()
{
    if (!m_heldSheet)
        return;
    const auto held = m_sync.heldBack();
    if (!held || held->version != m_heldShown)
        m_heldSheet->reject();
}

void SyncSection::askForPassphrase()
{
    const bool enter = m_sync.status().state == SyncStatus::State::NeedsPassphrase;
    auto *dialog =
        new PassphraseDialog(enter ? PassphraseDialog::Purpose::Enter : PassphraseDialog::Purpose::Choose, window());
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        m_sync.setPassphrase(
            dialog->passphrase(), [self = QPointer<SyncSection>(this),
                                   told = report(text("cloudSync.passphraseStored"_text))](const Outcome &outcome) {
                told(outcome);
                if (self && outcome && std::exchange(self->m_setUpWaits, false) && !self->m_sync.autoSyncEnabled())
                    self->configure();
            });
    });
    dialog->open();
}

void SyncSection::askToRemoveEncryption()
{
    Alert alert{Alert::Style::Warning,
                text("cloudSync.decryptTitle"_text),
                text("cloudSync.decryptMessage"_text),
                {text("cloudSync.decryptAction"_text), text("sheet.cancel"_text)}};
    alert.defaultButton = 1;
    m_services.alerts.show(alert, [self = QPointer<SyncSection>(this)](int button) {
        if (!self || button != 0)
            return;
        self->m_sync.removeEncryption(self->report(text("cloudSync.decrypted"_text)));
    });
}

CloudSync::Done SyncSection::report(const QString &success)
{
    return [self = QPointer<SyncSection>(this), success, begun = begin(Busy::Working)](const Outcome &outcome) {
        if (!self || !self->ended(begun))
            return;
        if (outcome)
            SettingsWindow::showStatus(self, success);
        else
            self->fail(outcome.error().description);
    };
}

void SyncSection::fail(const QString &sentence)
{
    m_services.alerts.show(
        {Alert::Style::Warning, text("cloudSync.resultTitle"_text), sentence, {text("sheet.ok"_text)}});
}

} // namespace orvelle
