#include "ui/notes/NoteLinkBar.h"

#include "base/Text.h"
#include "links/richtext/RichTextLinks.h"
#include "ui/common/Icons.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace orvelle {

NoteLinkBar::NoteLinkBar(QWidget *parent)
    : QFrame(parent), m_address(new QLineEdit(this)), m_problem(new QLabel(this)), m_open(nullptr), m_remove(nullptr)
{
    m_address->setObjectName(QStringLiteral("noteLinkAddress"));
    m_address->setPlaceholderText(text("note.link.placeholder"_text));
    m_address->setAccessibleName(text("note.link.address"_text));
    m_problem->setText(text("note.link.unsafe"_text));
    m_problem->setWordWrap(true);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(8, 4, 8, 6);
    auto *row = new QHBoxLayout;
    row->setSpacing(2);
    column->addLayout(row);
    column->addWidget(m_problem);
    row->addWidget(m_address, 1);
    row->addSpacing(4);
    QToolButton *apply = addButton(QStringLiteral("checkmark.circle.fill"), text("note.link.apply"_text));
    m_open = addButton(QStringLiteral("arrow.up.forward.square"), text("note.link.open"_text));
    m_remove = addButton(QStringLiteral("trash"), text("note.link.remove"_text));
    QToolButton *close = addButton(QStringLiteral("xmark"), text("note.link.close"_text));
    for (QToolButton *button : {apply, m_open, m_remove, close})
        row->addWidget(button);
    connect(m_address, &QLineEdit::textChanged, this, [this] { showProblem(false); });
    connect(apply, &QToolButton::clicked, this, &NoteLinkBar::take);
    connect(m_open, &QToolButton::clicked, this, [this] { emit openRequested(m_address->text()); });
    connect(m_remove, &QToolButton::clicked, this, [this] {
        emit addressChosen({});
        dismiss();
    });
    connect(close, &QToolButton::clicked, this, &NoteLinkBar::dismiss);
    hide();
}

QToolButton *NoteLinkBar::addButton(const QString &symbol, const QString &title)
{
    auto *button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setIcon(symbolIcon(symbol));
    button->setToolTip(title);
    button->setAccessibleName(title);
    return button;
}

void NoteLinkBar::edit(const QString &address)
{
    m_address->setText(address);
    m_address->selectAll();
    m_open->setVisible(!address.isEmpty());
    m_remove->setVisible(!address.isEmpty());
    showProblem(false);
    show();
    m_address->setFocus(Qt::OtherFocusReason);
}

void NoteLinkBar::dismiss()
{
    hide();
    emit closed();
}

void NoteLinkBar::showProblem(bool problem)
{
    m_problem->setVisible(problem);
}

void NoteLinkBar::take()
{
    const QString typed = m_address->text().trimmed();
    const auto link = safeLink(typed);
    if (!typed.isEmpty() && !link) {
        showProblem(true);
        return;
    }
    emit addressChosen(link ? link->toString(QUrl::FullyEncoded) : QString());
    dismiss();
}

void NoteLinkBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        take();
    else
        QFrame::keyPressEvent(event);
}

} // namespace orvelle
