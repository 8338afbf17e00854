#include "ui/settings/LinkField.h"

#include "ui/common/AssistedInput.h"

#include <QFocusEvent>
#include <QKeyEvent>

namespace orvelle {

LinkField::LinkField(std::function<bool(const QString &)> commit, QWidget *parent)
    : QLineEdit(parent), m_commit(std::move(commit))
{
    countAllAsTyped(this);
    storeWhatIsWrittenUnfocused(this, [this] { this->commit(); });
}

void LinkField::setStored(const QString &text)
{
    m_stored = text;
    if (isModified() || text == this->text())
        return;
    setText(text);
    setModified(false);
    setCursorPosition(0); // the beginning says more than the end
}

void LinkField::commit()
{
    if (!isModified())
        return;
    const QString typed = text().trimmed();
    if (typed == m_stored) {
        revert();
        return;
    }
    // What comes back from the store by way of setStored() is shown then.
    setModified(false);
    if (!m_commit(typed)) {
        setModified(true);
        return;
    }
    revert();
}

void LinkField::revert()
{
    setText(m_stored);
    setModified(false);
    emit settled();
}

void LinkField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        commit();
        selectAll();
        event->accept();
    } else if (event->key() == Qt::Key_Escape && isModified()) {
        revert();
        event->accept();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

void LinkField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // A menu over the field gives the focus back.
    if (event->reason() != Qt::PopupFocusReason)
        commit();
}

} // namespace orvelle
