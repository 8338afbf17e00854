#pragma once

#include <QFrame>

class QLabel;
class QLineEdit;
class QToolButton;

namespace orvelle {

/// A line below the format bar where a link's address is typed. Return takes
/// it over, Escape closes. Hidden until edit() is called.
class NoteLinkBar : public QFrame
{
    Q_OBJECT

public:
    explicit NoteLinkBar(QWidget *parent = nullptr);

    /// Shows the line with this address, empty for a new link.
    void edit(const QString &address);
    void dismiss();

signals:
    /// Safe and complete; empty to remove the link.
    void addressChosen(const QString &address);
    void openRequested(const QString &address);
    void closed();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QToolButton *addButton(const QString &symbol, const QString &title);
    void take();
    void showProblem(bool problem);

    QLineEdit *m_address;
    QLabel *m_problem;
    QToolButton *m_open;
    QToolButton *m_remove;
};

} // namespace orvelle
