#pragma once

#include "sync/ContainerSettings.h"

#include <QWidget>

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace orvelle {

class FolderChooser;
class Volumes;

/// The choice of where the shared document is kept: a kind of place, and what
/// has to be known of it. Only what belongs to the kind is shown.
class SyncPlaceForm : public QWidget
{
    Q_OBJECT

public:
    /// `folderChooser` may be null: then folders are only typed.
    SyncPlaceForm(FolderChooser *folderChooser, const Volumes &volumes, QWidget *parent = nullptr);

    /// Fills in what is stored; the password stays empty.
    void showPlace(const SyncPlace &place);
    /// The same where that was changed elsewhere, unless something was typed
    /// here meanwhile.
    void followPlace(const SyncPlace &stored);
    /// As it is written there; not checked.
    SyncPlace place() const;
    /// Absent when none was typed.
    std::optional<QString> password() const;
    void clearPassword();

    /// What can be done while something goes on. A place may hang for ever, so
    /// that another one can be chosen during all but a choice.
    enum class Use { All, NoTest, None };
    void setUse(Use use);
    /// What came of the test, or why the place is refused.
    void showOutcome(bool good, const QString &sentence);

signals:
    void testWanted();
    void configureWanted();

private:
    void addRows();
    void addButtons();
    void chooseFolder();
    void edited();
    void showRows();

    FolderChooser *m_folderChooser;
    const Volumes &m_volumes;
    QFormLayout *m_form;
    QComboBox *m_kind;
    QLineEdit *m_folder;
    QPushButton *m_choose;
    QLineEdit *m_server;
    QLineEdit *m_user;
    QLineEdit *m_password;
    QPushButton *m_test;
    QPushButton *m_configure;
    QLabel *m_outcomeIcon;
    QLabel *m_outcome;
    QWidget *m_folderRow;
    SyncPlace m_stored;
};

} // namespace orvelle
