#pragma once

#include <QFrame>
#include <QString>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace orvelle {

/// What an empty list shows in its place: a picture, what is missing, and what
/// to do about it.
class EmptyState : public QFrame
{
    Q_OBJECT

public:
    EmptyState(const QString &symbol, const QString &title, const QString &message, QWidget *parent = nullptr);

    /// Adds a button below the texts and takes ownership.
    void addButton(QPushButton *button);

    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void updatePicture();

    QString m_symbol;
    QLabel *m_picture;
    QVBoxLayout *m_column;
};

} // namespace orvelle
