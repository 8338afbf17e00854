#include "ui/exchange/ImportReport.h"

#include "base/Text.h"

#include <QLocale>

namespace orvelle {

namespace {

/// A line of the report, for a number that is not zero.
void addCount(QStringList &lines, TextKey label, qint64 count)
{
    if (count > 0)
        lines += text(label) + QChar(QChar::Nbsp) + QLocale().toString(count);
}

Alert report(bool changed, const QStringList &lines)
{
    Alert alert;
    alert.message = changed ? text("import.finished"_text) : text("import.nothingNew"_text);
    alert.informativeText = lines.join(u'\n');
    alert.buttons = {text("sheet.ok"_text)};
    if (changed)
        alert.buttons += text("import.undo"_text);
    // Neither Enter nor Escape may take back what was just asked for.
    alert.escapeButton = 0;
    return alert;
}

} // namespace

Alert importAlert(const ImportResult &result, ImportMode mode, qint64 droppedCount, bool settingsChanged)
{
    QStringList lines;
    addCount(lines, mode == ImportMode::Replace ? "import.imported"_text : "import.added"_text, result.importedCount);
    addCount(lines, "import.duplicatesDetected"_text, result.skippedCount);
    addCount(lines, "import.dropped"_text, droppedCount);
    if (settingsChanged)
        lines += text("import.settingsTaken"_text);
    if (result.quickLaunchImported)
        lines += text("import.quickLaunchImported"_text);
    if (result.hasVersionMismatch)
        lines += text("import.versionWarning"_text);
    // A replacement is a change even when nothing came in its place.
    const bool changed = mode == ImportMode::Replace || result.importedCount > 0 || settingsChanged;
    return report(changed, lines);
}

Alert importAlert(const ForeignLinks &foreign, qint64 imported)
{
    QStringList lines;
    addCount(lines, "import.added"_text, imported);
    addCount(lines, "import.foldedFolders"_text, foreign.foldedFolders);
    addCount(lines, "import.leftOutAddresses"_text, foreign.leftOut);
    addCount(lines, "import.unreadableFiles"_text, foreign.unreadable);
    addCount(lines, "import.otherFiles"_text, foreign.otherFiles);
    return report(imported > 0, lines);
}

Alert exportAlert(const QString &fileName, qint64 count, qint64 notesLeftOut)
{
    QStringList lines;
    addCount(lines, "export.items"_text, count);
    addCount(lines, "export.notesLeftOut"_text, notesLeftOut);
    Alert alert;
    alert.message = text("export.finished %@"_text, fileName);
    alert.informativeText = lines.join(u'\n');
    alert.buttons = {text("sheet.ok"_text)};
    return alert;
}

Alert failureAlert(const QString &title, const QString &sentence)
{
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = title;
    alert.informativeText = sentence;
    alert.buttons = {text("sheet.ok"_text)};
    return alert;
}

} // namespace orvelle
