#include "ui/exchange/FileSync.h"

#include "base/Text.h"
#include "links/LinkStore.h"
#include "links/exchange/ExchangeDocument.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "sync/SyncEdit.h"
#include "ui/common/SyncPreviewView.h"
#include "ui/common/SyncSummary.h"
#include "ui/exchange/BackgroundWork.h"
#include "ui/exchange/ImportReport.h"

namespace orvelle {

FileSync::FileSync(const Services &services, QObject *parent) : QObject(parent), m_services(services) {}

void FileSync::analyse(const PreparedImport &prepared, QWidget *window, const Analysed &analysed)
{
    const auto work = [local = m_services.links.links(), prepared, analysed](WorkProgress &) -> BackgroundWork::Finish {
        return [analysis = analyzeSyncChanges(local, prepared.items, prepared.document->exportDate), analysed] {
            analysed(analysis);
        };
    };
    BackgroundWork::start(this, window, m_services.clock, text("import.working"_text), work);
}

void FileSync::askWithSummary(const PreparedImport &prepared)
{
    analyse(prepared, nullptr, [this, imported = prepared.items](const SyncAnalysis &analysis) {
        Alert alert;
        alert.message = text("sync.confirmTitle"_text);
        alert.informativeText = buildSyncSummary(analysis);
        alert.buttons = {text("sync.apply"_text), text("sheet.cancel"_text), text("sync.showChanges"_text)};
        alert.escapeButton = 1;
        m_services.alerts.show(alert, [self = QPointer<FileSync>(this), analysis, imported](int button) {
            if (self && button == 0)
                self->apply(analysis, imported);
            else if (self && button == 2)
                self->preview(analysis, imported, nullptr);
        });
    });
}

void FileSync::askWithPreview(const PreparedImport &prepared, QWidget *window)
{
    analyse(prepared, window,
            [this, imported = prepared.items, shown = QPointer<QWidget>(window)](const SyncAnalysis &analysis) {
                preview(analysis, imported, shown);
            });
}

void FileSync::preview(const SyncAnalysis &analysis, const LinkList &imported, QWidget *window)
{
    auto *sheet = new SyncPreviewView(analysis, SyncPreviewView::Purpose::Apply, window);
    connect(sheet, &QDialog::accepted, this, [this, sheet, imported] { apply(sheet->analysis(), imported); });
    sheet->show();
    sheet->raise();
    sheet->activateWindow();
}

void FileSync::apply(const SyncAnalysis &analysis, const LinkList &imported)
{
    const auto result = applySync(m_services.links, imported, analysis, m_services.clock.now());
    if (result)
        return showSyncResult(m_services.alerts, *result);
    const ImportError error{ImportError::Kind::NotStored, {}};
    m_services.alerts.show(
        failureAlert(text("import.sync"_text), text("error.import %@"_text, importErrorText(error))));
}

} // namespace orvelle
