#include "ui/settings/AboutLicencesView.h"

#include "base/Text.h"
#include "ui/settings/AboutLicences.h"
#include "ui/settings/Sections.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace orvelle {

namespace {

/// Columns of the fixed font: licence texts are set for eighty.
constexpr int shownColumns = 84;
constexpr int shownLines = 28;

QPlainTextEdit *textView(const QString &text, QWidget *parent)
{
    auto *view = new QPlainTextEdit(text, parent);
    view->setReadOnly(true);
    view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const QFontMetrics metrics = view->fontMetrics();
    view->setMinimumSize(metrics.averageCharWidth() * shownColumns / 2, metrics.height() * shownLines / 3);
    return view;
}

} // namespace

AboutLicencesView::AboutLicencesView(QWidget *parent) : QWidget(parent)
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(24);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(3, 1);
    for (const AboutLicence &licence : aboutLicences(systemDocumentFolders()))
        addLine(grid, licence);
}

void AboutLicencesView::addLine(QGridLayout *grid, const AboutLicence &licence)
{
    const int row = grid->rowCount();
    grid->addWidget(new QLabel(licence.name, this), row, 0);
    grid->addWidget(sectionSubtitle(licence.licence, this), row, 1);
    if (licence.textFile.isEmpty())
        return;
    auto *read = new QPushButton(text("about.readLicence"_text), this);
    read->setObjectName(QStringLiteral("licence.") + licence.name);
    read->setAccessibleName(spokenLabel(read->text()) + QStringLiteral(": ") + licence.name);
    connect(read, &QPushButton::clicked, this, [this, licence] { showText(licence); });
    grid->addWidget(read, row, 2);
}

void AboutLicencesView::showText(const AboutLicence &licence)
{
    auto *dialog = new QDialog(this);
    dialog->setObjectName(QStringLiteral("LicenceText"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(text("about.licenceOf %@"_text, licence.name));
    auto *view =
        textView(licenceText(licence).value_or(text("about.licenceUnreadable %@"_text, licence.textFile)), dialog);
    view->setAccessibleName(dialog->windowTitle());
    auto *buttons = new QDialogButtonBox(dialog);
    buttons->addButton(text("snapshot.close"_text), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    auto *column = new QVBoxLayout(dialog);
    column->addWidget(view, 1);
    column->addWidget(buttons);
    const QFontMetrics metrics = view->fontMetrics();
    const QSize wanted(metrics.averageCharWidth() * shownColumns + 60, metrics.height() * shownLines + 60);
    dialog->resize(wanted.boundedTo(screen()->availableSize() * 0.9));
    dialog->open();
}

} // namespace orvelle
