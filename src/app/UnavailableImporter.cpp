#include "app/UnavailableImporter.h"

#include "base/Text.h"
#include "platform/Alerts.h"

namespace orvelle {

void UnavailableImporter::performFileImport(const QByteArray &, Mode)
{
    say();
}

void UnavailableImporter::performFileSync(const QByteArray &)
{
    say();
}

void UnavailableImporter::say()
{
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = text("import.title"_text);
    alert.informativeText = text("error.import %@"_text, text("error.importNotAvailable"_text));
    alert.buttons = {text("sheet.ok"_text)};
    m_alerts.show(alert);
}

} // namespace orvelle
