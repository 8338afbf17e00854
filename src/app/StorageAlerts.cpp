#include "app/StorageAlerts.h"

#include "app/CoreServices.h"
#include "base/Text.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"

namespace orvelle {

StorageAlerts::StorageAlerts(UserDefaults &defaults, LinkStore &links, Clock &clock, Alerts &alerts, QObject *parent)
    : QObject(parent), m_links(links), m_clock(clock), m_alerts(alerts)
{
    connect(&defaults, &UserDefaults::writeFailed, this,
            [this](const QString &, const DefaultsError &error) { writeFailed(error); });
    // An edit that was refused for want of a snapshot wrote no setting; its
    // user has to hear of it each time.
    connect(&links, &LinkStore::saveFailed, this, [this](const DefaultsError &error) {
        if (!m_links.hasUnsavedChanges())
            m_lastFailure.reset();
        writeFailed(error);
    });
    connect(&links, &LinkStore::undecodableDataSetAside, this, &StorageAlerts::linksSetAside);
    connect(&links, &LinkStore::linksChanged, this, [this] {
        if (!m_links.hasUnsavedChanges())
            m_lastFailure.reset();
    });
}

void StorageAlerts::writeFailed(const DefaultsError &error)
{
    // A conflict is another process's success; the edit is made again.
    if (error.kind == DefaultsError::Kind::Conflict)
        return;
    const Timestamp now = m_clock.now();
    const auto before = std::exchange(m_lastFailure, now);
    const double quiet = before ? now - *before : spellEnd;
    if (quiet < 0 || quiet >= spellEnd)
        show(text("error.saveTitle"_text), writeErrorText(error));
}

void StorageAlerts::damagedSettingsMovedTo(const QString &path)
{
    show(text("error.damagedTitle"_text), text("error.damagedMessage %@"_text, path));
}

void StorageAlerts::linksSetAside(const QString &key)
{
    show(text("error.unreadableTitle"_text), text("error.unreadableMessage %@"_text, key));
}

void StorageAlerts::show(const QString &message, const QString &informativeText)
{
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = message;
    alert.informativeText = informativeText;
    alert.buttons = {text("sheet.ok"_text)};
    m_alerts.show(alert);
}

} // namespace orvelle
