#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QWidget>

class QFormLayout;
class QPushButton;

namespace orvelle {

/// The version and whether there is a newer one, where the data lies, the licence, and debug mode.
class AboutTab : public QWidget
{
    Q_OBJECT

public:
    explicit AboutTab(const SettingsServices &services, QWidget *parent = nullptr);

signals:
    /// The user wants to see the welcome content again.
    void welcomeRequested();

private:
    QWidget *makeHead();
    void openManual();
    QWidget *makeDataSection();
    void addPlace(QFormLayout *form, const QString &label, const QString &path, const QString &folder);
    QWidget *makeDebugSection();
    void refresh();
    void askToClearDebugData();

    const SettingsServices &m_services;
    QPushButton *m_enterDebug;
    QPushButton *m_exitDebug;
    QPushButton *m_clearDebug;
};

} // namespace orvelle
