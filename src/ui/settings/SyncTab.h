#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QWidget>

class QGridLayout;

namespace orvelle {

/// The links in other places: kept in step with other machines, documents that
/// come and go, and the snapshots.
class SyncTab : public QWidget
{
    Q_OBJECT

public:
    explicit SyncTab(const SettingsServices &services, QWidget *parent = nullptr);

private:
    QWidget *makeExchangeSection();

    const SettingsServices &m_services;
};

} // namespace orvelle
