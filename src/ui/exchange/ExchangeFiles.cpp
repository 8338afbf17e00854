#include "ui/exchange/ExchangeFiles.h"

#include "base/Text.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "platform/Volumes.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

namespace orvelle {

namespace {

struct Texts {
    TextKey openTitle;
    TextKey saveTitle;
    TextKey filter;
    const char *patterns;
    const char *suffix;
};
// In the order of ExchangeFiles::Kind.
constexpr Texts kinds[] = {
    {"import.title"_text, "export.title"_text, "exchange.documents"_text, "(*.ovexport *.OVEXPORT)", "ovexport"},
    {"import.bookmarksTitle"_text, "export.bookmarksTitle"_text, "exchange.bookmarkFiles"_text,
     "(*.html *.htm *.HTML *.HTM)", "html"},
    {"import.linkFolderTitle"_text, {}, {}, "", ""},
};

const Texts &textsOf(ExchangeFiles::Kind kind)
{
    return kinds[static_cast<int>(kind)];
}

QStringList filtersOf(const Texts &kind)
{
    return {text(kind.filter) + u' ' + QString::fromLatin1(kind.patterns),
            text("exchange.allFiles"_text) + QStringLiteral(" (*)")};
}

} // namespace

QString ExchangeFiles::lastFolder() const
{
    const QString folder = m_defaults.get<QString>(lastFolderKey()).value_or(QString());
    // The dialog begins in no folder that may hang.
    if (!folder.isEmpty() && m_volumes.distantVolumeHolding(folder).isEmpty() && QFileInfo(folder).isDir())
        return folder;
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void ExchangeFiles::askWhatToOpen(Kind kind, QWidget *parent, const Chosen &chosen)
{
    const Texts &texts = textsOf(kind);
    auto *dialog = new QFileDialog(parent, text(texts.openTitle), lastFolder());
    dialog->setLabelText(QFileDialog::Accept, text("import.confirm"_text));
    if (kind == Kind::LinkFolder) {
        dialog->setFileMode(QFileDialog::Directory);
    } else {
        dialog->setFileMode(QFileDialog::ExistingFile);
        dialog->setNameFilters(filtersOf(texts));
    }
    show(dialog, chosen);
}

void ExchangeFiles::askWhereToSave(Kind kind, QWidget *parent, const Chosen &chosen)
{
    const Texts &texts = textsOf(kind);
    const QString suffix = QString::fromLatin1(texts.suffix);
    const QString today = m_clock.now().toDateTime().toLocalTime().date().toString(Qt::ISODate);
    auto *dialog = new QFileDialog(parent, text(texts.saveTitle), lastFolder());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setNameFilters(filtersOf(texts));
    dialog->setDefaultSuffix(suffix);
    dialog->selectFile(QStringLiteral("Orvelle %1.%2").arg(today, suffix));
    show(dialog, chosen);
}

void ExchangeFiles::show(QFileDialog *dialog, const Chosen &chosen)
{
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QFileDialog::accepted, dialog, [this, dialog, chosen] {
        const QStringList files = dialog->selectedFiles();
        if (files.isEmpty())
            return;
        // A convenience: that it cannot be remembered must not stop the work.
        static_cast<void>(m_defaults.write(lastFolderKey(), QFileInfo(files.constFirst()).absolutePath()));
        chosen(files.constFirst());
    });
    dialog->open();
}

} // namespace orvelle
