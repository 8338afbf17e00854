#include "ui/settings/PassphraseDialog.h"

#include "base/Text.h"
#include "ui/common/NoticeBar.h"
#include "ui/settings/Sections.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr int columnWidth = 400;

} // namespace

PassphraseDialog::PassphraseDialog(Purpose purpose, QWidget *parent)
    : QDialog(parent), m_purpose(purpose), m_complaint(sectionSubtitle({}, this)), m_ok(new QPushButton(this))
{
    const bool choose = purpose == Purpose::Choose;
    setObjectName(QStringLiteral("PassphraseDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setWindowTitle(text("cloudSync.passphraseTitle"_text));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 16);
    column->setSpacing(8);
    auto *explanation = sectionSubtitle(
        choose ? text("cloudSync.passphraseChoose"_text) : text("cloudSync.passphraseEnter"_text), this);
    explanation->setMinimumWidth(columnWidth);
    column->addWidget(explanation);
    m_first = addField(column, "passphrase", text("cloudSync.passphrase"_text));
    if (choose) {
        m_again = addField(column, "passphraseAgain", text("cloudSync.passphraseAgain"_text));
        auto *warning = new NoticeBar(this);
        warning->setObjectName(QStringLiteral("passphraseWarning"));
        warning->showNotice(text("cloudSync.passphraseWarning"_text), {}, false);
        column->addWidget(warning);
    }
    column->addWidget(m_complaint);

    auto *cancel = new QPushButton(text("sheet.cancel"_text), this);
    m_ok->setObjectName(QStringLiteral("passphraseOk"));
    m_ok->setText(choose ? text("cloudSync.encrypt"_text) : text("cloudSync.passphraseUse"_text));
    m_ok->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(m_ok);
    column->addLayout(buttons);
    refresh();
    // A window's own minimum size does not reckon with wrapped lines.
    const int width = column->totalMinimumSize().width();
    setFixedSize(width, column->totalHeightForWidth(width));
}

QLineEdit *PassphraseDialog::addField(QBoxLayout *column, const char *name, const QString &label)
{
    auto *caption = new QLabel(label, this);
    auto *edit = new QLineEdit(this);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setEchoMode(QLineEdit::Password);
    edit->setAccessibleName(spokenLabel(label));
    caption->setBuddy(edit);
    column->addWidget(caption);
    column->addWidget(edit);
    connect(edit, &QLineEdit::textChanged, this, &PassphraseDialog::refresh);
    return edit;
}

QString PassphraseDialog::passphrase() const
{
    return m_first->text();
}

void PassphraseDialog::refresh()
{
    if (m_purpose == Purpose::Enter)
        return m_ok->setEnabled(!m_first->text().isEmpty());
    const bool isShort = m_first->text().size() < leastLength;
    const bool differs = m_first->text() != m_again->text();
    m_complaint->setText(isShort   ? text("cloudSync.passphraseShort %lld"_text, leastLength)
                         : differs ? text("cloudSync.passphraseDiffers"_text)
                                   : QString());
    m_ok->setEnabled(!isShort && !differs);
}

} // namespace orvelle
