#pragma once

#include "links/exchange/LinkExchange.h"

#include <QDialog>

class QButtonGroup;
class QPushButton;
class QVBoxLayout;

namespace orvelle {

/// Asks in which way a document is to be taken in, and says what is in it.
class ImportDialog : public QDialog
{
    Q_OBJECT

public:
    ImportDialog(const QString &fileName, const PreparedImport &prepared, QWidget *parent = nullptr);

    /// What is chosen now.
    ImportMode mode() const;

private:
    void addHead(QVBoxLayout *column, const QString &fileName, const PreparedImport &prepared);
    void addModes(QVBoxLayout *column);
    void addButtons(QVBoxLayout *column);

    QButtonGroup *m_modes;
};

} // namespace orvelle
