#pragma once

#include <QDialog>

class QBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace orvelle {

/// Asks for the passphrase of the shared document: for a new one twice, with
/// what it means to lose it. Deletes itself when closed.
class PassphraseDialog : public QDialog
{
    Q_OBJECT

public:
    enum class Purpose {
        Choose, ///< the document is to be encrypted with it
        Enter,  ///< the document is encrypted with it already
    };
    PassphraseDialog(Purpose purpose, QWidget *parent);

    static constexpr int leastLength = 8;

    QString passphrase() const;

private:
    QLineEdit *addField(QBoxLayout *column, const char *name, const QString &label);
    void refresh();

    Purpose m_purpose;
    QLineEdit *m_first = nullptr;
    QLineEdit *m_again = nullptr;
    QLabel *m_complaint;
    QPushButton *m_ok;
};

} // namespace orvelle
