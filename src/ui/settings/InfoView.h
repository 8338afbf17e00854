#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QDialog>

class QPushButton;

namespace orvelle {

/// The welcome content: what Orvelle keeps within reach, what leaves the
/// computer, and two ways to begin.
class InfoView : public QDialog
{
    Q_OBJECT

public:
    explicit InfoView(const SettingsServices &services, QWidget *parent = nullptr);

private:
    QWidget *makePage();
    QWidget *makeWays();
    QLayout *makeFeatures();
    QWidget *makePrivacy();
    void addSample();
    void importBookmarks();

    SettingsServices m_services;
    QPushButton *m_addSample;
    QPushButton *m_importBookmarks;
};

} // namespace orvelle
