#pragma once

#include <QLineEdit>

#include <functional>

namespace orvelle {

/// One line of text that belongs to somebody else: Enter or leaving the field
/// hands it over, and so does a moment after it was written without the focus;
/// Escape takes the typing back. What is being typed is never
/// replaced from outside.
class LinkField : public QLineEdit
{
    Q_OBJECT

public:
    /// `commit` takes the text over and answers false to leave it as typed.
    LinkField(std::function<bool(const QString &)> commit, QWidget *parent = nullptr);

    /// The text as it is stored. Shown unless something is being typed.
    void setStored(const QString &text);
    /// Hands over what was typed; nothing to do otherwise.
    void commit();
    /// Back to the stored text.
    void revert();

signals:
    /// Typing was taken back, or went over.
    void settled();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    std::function<bool(const QString &)> m_commit;
    QString m_stored;
};

} // namespace orvelle
