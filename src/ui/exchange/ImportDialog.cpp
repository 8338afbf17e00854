#include "ui/exchange/ImportDialog.h"

#include "base/Text.h"
#include "links/LinkTree.h"
#include "links/exchange/ExchangeDocument.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/LineText.h"
#include "ui/common/NoticeBar.h"

#include <QButtonGroup>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr int columnWidth = 420;

struct Mode {
    ImportMode mode;
    TextKey title;
    TextKey description;
    const char *objectName;
};
constexpr Mode modes[] = {
    {ImportMode::Merge, "import.merge"_text, "import.mergeDesc"_text, "importMerge"},
    {ImportMode::Replace, "import.replaceAll"_text, "import.replaceAllDesc"_text, "importReplace"},
    {ImportMode::Sync, "import.sync"_text, "import.syncDesc"_text, "importSync"},
};

QLabel *wrapped(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(breakable(text));
    label->setWordWrap(true);
    label->setMinimumWidth(columnWidth);
    return label;
}

/// Below its button, where the button's text begins, and softer.
QLabel *descriptionOf(const QRadioButton *button, const QString &text)
{
    QLabel *label = wrapped(text, button->parentWidget());
    QStyleOptionButton option;
    option.initFrom(button);
    option.rect = {0, 0, columnWidth, button->sizeHint().height()};
    label->setIndent(button->style()->subElementRect(QStyle::SE_RadioButtonContents, &option, button).left());
    return label;
}

/// "214 items, written on 21 November 2026 by Attic".
QString factsOf(const PreparedImport &prepared)
{
    QStringList facts = {text("import.itemsInFile %lld"_text, countAll(prepared.items))};
    const ExportData &document = *prepared.document;
    const QDateTime written = document.exportDate.toDateTime().toLocalTime();
    facts += text("import.writtenOn %@"_text, QLocale().toString(written, QLocale::ShortFormat));
    if (document.lastModifiedBy && !document.lastModifiedBy->isEmpty())
        facts += text("import.writtenBy %@"_text, *document.lastModifiedBy);
    return facts.join(QStringLiteral("  ·  "));
}

} // namespace

ImportDialog::ImportDialog(const QString &fileName, const PreparedImport &prepared, QWidget *parent)
    : QDialog(parent), m_modes(new QButtonGroup(this))
{
    setObjectName(QStringLiteral("ImportDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("import.title"_text));
    setWindowModality(parent ? Qt::WindowModal : Qt::ApplicationModal);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 20, 20, 16);
    column->setSpacing(8);
    addHead(column, fileName, prepared);
    addModes(column);
    addButtons(column);
    // A window's own minimum size does not reckon with wrapped lines.
    const int width = column->totalMinimumSize().width();
    setFixedSize(width, column->totalHeightForWidth(width));
}

ImportMode ImportDialog::mode() const
{
    return static_cast<ImportMode>(m_modes->checkedId());
}

void ImportDialog::addHead(QVBoxLayout *column, const QString &fileName, const PreparedImport &prepared)
{
    QLabel *name = wrapped(fileName, this);
    QFont font = name->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.1);
    name->setFont(font);
    column->addWidget(name);
    column->addWidget(wrapped(factsOf(prepared), this));
    if (prepared.hasVersionMismatch) {
        auto *notice = new NoticeBar(this);
        notice->showNotice(text("import.versionWarning"_text), {}, false);
        column->addSpacing(4);
        column->addWidget(notice);
    }
    column->addSpacing(8);
    column->addWidget(wrapped(text("import.howTo"_text), this));
}

void ImportDialog::addModes(QVBoxLayout *column)
{
    for (const Mode &mode : modes) {
        auto *button = new QRadioButton(text(mode.title), this);
        button->setObjectName(QString::fromLatin1(mode.objectName));
        button->setAccessibleDescription(text(mode.description));
        QFont font = button->font();
        font.setBold(true);
        button->setFont(font);
        reachWhenChecked(button);
        m_modes->addButton(button, static_cast<int>(mode.mode));
        QLabel *description = descriptionOf(button, text(mode.description));
        auto *rows = new QVBoxLayout;
        rows->setSpacing(2);
        rows->addWidget(button);
        rows->addWidget(description);
        column->addLayout(rows);
    }
    m_modes->button(static_cast<int>(ImportMode::Merge))->setChecked(true);
    column->addSpacing(8);
    column->addWidget(wrapped(text("import.modeDescription"_text), this));
}

void ImportDialog::addButtons(QVBoxLayout *column)
{
    auto *cancel = new QPushButton(text("sheet.cancel"_text), this);
    auto *import = new QPushButton(text("import.confirm"_text), this);
    import->setObjectName(QStringLiteral("importConfirm"));
    import->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(import, &QPushButton::clicked, this, &QDialog::accept);
    auto *row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(cancel);
    row->addWidget(import);
    column->addSpacing(8);
    column->addLayout(row);
}

} // namespace orvelle
