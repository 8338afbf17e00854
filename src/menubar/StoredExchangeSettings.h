#pragma once

#include "links/exchange/ExchangeSettings.h"
#include "platform/UserDefaults.h"

namespace orvelle {

class DebugModeManager;
class Notifications;
class WidgetOrderManager;

/// What documents say about who wrote them.
struct ProgramIdentity {
    QString version;
    QString build;
    QString machineName;
};

/// The settings that travel, straight from and to the settings store, with the
/// defaults of their owners. Main thread.
class StoredExchangeSettings : public ExchangeSettings
{
public:
    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        WidgetOrderManager &widgetOrder;
    };

    StoredExchangeSettings(const Services &services, const ProgramIdentity &identity);

    void gather(ExportData &document) const override;
    bool apply(const ExportData &document) override;

    static QString settingsModifiedAtBaseKey() { return QStringLiteral("orvelle_settingsModifiedAt"); }

private:
    // Each stores what is new, announces it, and says whether anything was.
    bool applyWeather(const ExportData &document);
    bool applyFigures(const ExportData &document);
    bool applyOthers(const ExportData &document);
    bool applyQuickLaunch(const ExportData &document);
    bool applyGeneral(const ExportData &document);

    Services m_services;
    ProgramIdentity m_identity;
};

} // namespace orvelle
