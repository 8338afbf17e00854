#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;

namespace orvelle {

class UpdateManager;

/// Whether there is a newer version, a button that looks, and the switch of
/// the daily check. Without a server to ask it says so.
class UpdateSection : public QWidget
{
    Q_OBJECT

public:
    explicit UpdateSection(UpdateManager &updates, QWidget *parent = nullptr);

private:
    void refresh();
    QString stateText() const;

    UpdateManager &m_updates;
    QLabel *m_state;
    // In the order of the Tab key.
    QPushButton *m_download;
    QPushButton *m_check;
    QCheckBox *m_auto;
    QLabel *m_sent;
};

} // namespace orvelle
