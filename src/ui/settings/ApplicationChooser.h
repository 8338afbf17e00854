#pragma once

#include "platform/Applications.h"

#include <QDialog>

#include <functional>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace orvelle {

/// A searchable list of the installed applications, or any desktop file. Make
/// one with new and open() it; it deletes itself.
class ApplicationChooser : public QDialog
{
    Q_OBJECT

public:
    ApplicationChooser(const Applications &applications, QWidget *parent);

signals:
    void chosen(const QString &desktopFile);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fill();
    void search(const QString &wanted);
    void chooseFile();
    void choose(const QString &desktopFile);

    QList<DesktopApplication> m_installed;
    QLineEdit *m_search;
    QListWidget *m_list;
    QPushButton *m_take;
};

} // namespace orvelle
