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
    if (const auto valid = validatedSyncPlace(place); !valid)
        return m_form->showOutcome(false, syncPlaceRefusalText(valid.error()));
    setBusy(true);
    m_form->showOutcome(true, {});
    m_sync.testPlace(place, m_form->password(),
                     [self = QPointer<SyncSection>(this)](const std::optional<QString> &failure) {
                         if (!self)
                             return;
                         self->setBusy(false);
                         self->m_form->showOutcome(!failure, failure.value_or(text("cloudSync.testGood"_text)));
                     });
}

void SyncSection::configure()
{
    const SyncPlace place = m_form->place();
    if (const auto valid = validatedSyncPlace(place); !valid)
        return m_form->showOutcome(false, syncPlaceRefusalText(valid.error()));
    setBusy(true);
    const auto ask = [&alerts = m_services.alerts](const std::function<void(ConfigureCloudSyncResult)> &answer) {
        Alert alert;
        alert.message = text("cloudSync.configureChoice.title"_text);
        alert.informativeText = text("cloudSync.configureChoice.message"_text);
        alert.buttons = {text("cloudSync.configureChoice.useExisting"_text),
                         text("cloudSync.configureChoice.createNew"_text), text("sheet.cancel"_text)};
        alerts.show(alert, [answer](int button) { answer(static_cast<ConfigureCloudSyncResult>(button)); });
    };
    const bool leaves = place.kind == SyncPlace::Kind::None;
    configureCloudSync(
        m_sync, place, m_form->password(), ask,
        [self = QPointer<SyncSection>(this), leaves](const Result<ConfigureCloudSyncResult, QString> &result) {
            if (!self)
                return;
            self->setBusy(false);
            if (!result)
                return self->fail(text("error.cloudSyncSave %@"_text, result.error()));
            self->m_form->showPlace(self->m_sync.place());
            if (*result != ConfigureCloudSyncResult::Cancelled && !leaves)
                self->m_form->showOutcome(true, text("cloudSync.saveSuccess"_text));
        });
}

void SyncSection::syncNow()
{
    setBusy(true);
    m_sync.syncNow([self = QPointer<SyncSection>(this)](const Outcome &outcome) {
        if (!self)
            return;
        self->setBusy(false);
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
    setBusy(true);
    m_sync.loadFromCloud([self = QPointer<SyncSection>(this)](const Outcome &outcome) {
        if (!self)
            return;
        self->setBusy(false);
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
    connect(sheet, &QDialog::accepted, this, [this] { m_sync.acceptHeldBack(); });
    connect(sheet, &SyncPreviewView::keepHere, this, [this] { m_sync.rejectHeldBack(); });
    sheet->open();
}

void SyncSection::askForPassphrase()
{
    const bool enter = m_sync.status().state == SyncStatus::State::NeedsPassphrase;
    auto *dialog =
        new PassphraseDialog(enter ? PassphraseDialog::Purpose::Enter : PassphraseDialog::Purpose::Choose, window());
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        setBusy(true);
        m_sync.setPassphrase(dialog->passphrase(), report(text("cloudSync.passphraseStored"_text)));
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
        self->setBusy(true);
        self->m_sync.removeEncryption(self->report(text("cloudSync.decrypted"_text)));
    });
}

CloudSync::Done SyncSection::report(const QString &success)
{
    return [self = QPointer<SyncSection>(this), success](const Outcome &outcome) {
        if (!self)
            return;
        self->setBusy(false);
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
