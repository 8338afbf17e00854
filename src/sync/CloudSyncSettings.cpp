#include "links/ExchangeDocument.h"
#include "links/ExchangeSettings.h"
#include "links/LinkEditing.h"
#include "platform/UserDefaults.h"
#include "sync/CloudSyncPrivate.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

// The settings of the application keep it under this key.
QString settingsModifiedAtBaseKey()
{
    return u"orvelle_settingsModifiedAt"_s;
}

QString dateText(const std::optional<Timestamp> &date)
{
    return date ? date->toDateTime().toString(Qt::ISODateWithMs) : u"nil"_s;
}

Timestamp wholeSeconds(Timestamp date)
{
    return {std::floor(date.seconds)};
}

QByteArray settingsDigest(ExportData document)
{
    document.links.clear();
    return exchangeDigests(document).content;
}

} // namespace

std::optional<Timestamp> CloudSync::Private::localSettingsModifiedAt() const
{
    return s.defaults.get<Timestamp>(key(settingsModifiedAtBaseKey()));
}

void CloudSync::Private::setLocalSettingsModifiedAt(const std::optional<Timestamp> &date)
{
    store(settingsModifiedAtBaseKey(), date ? std::optional<DefaultsValue>(*date) : std::nullopt);
}

void CloudSync::Private::touchSettingsModifiedAt()
{
    if (isApplyingRemoteSettings)
        return;
    settingsTouched = true;
    setLocalSettingsModifiedAt(editDate(localSettingsModifiedAt(), s.clock.now()));
}

void CloudSync::syncableSettingsDidChange()
{
    m_d->touchSettingsModifiedAt();
    scheduleAutoSync();
}

void CloudSync::Private::applySyncSettings(const SyncDocument &document)
{
    const auto theirs = document.content.document->settingsModifiedAt;
    const auto ours = localSettingsModifiedAt();
    if (!theirs || (ours && *ours >= *theirs)) {
        qCInfo(lcCloudSync).noquote()
            << u"Settings locaux (%1) plus récents ou égaux au distant (%2) — pas d'application"_s.arg(
                   dateText(ours), dateText(theirs));
        return;
    }
    isApplyingRemoteSettings = true;
    s.settings.apply(*document.content.document);
    setLocalSettingsModifiedAt(theirs);
    settingsTouched = false;
    isApplyingRemoteSettings = false;
}

/// Whether the settings here are to be written over the document's.
bool CloudSync::Private::settingsAreNewer(const SyncDocument &document)
{
    const auto theirs = document.content.document->settingsModifiedAt;
    const auto ours = localSettingsModifiedAt();
    if (!ours || !theirs)
        return ours.has_value();
    if (wholeSeconds(*ours) != *theirs)
        return *ours > *theirs;
    // Changed here and there in the same second: as neither would ever take
    // the other's, this one becomes newer.
    if (!settingsTouched || settingsDigest(s.exchange.gatherDocument()) == settingsDigest(*document.content.document))
        return false;
    setLocalSettingsModifiedAt(*theirs + 1);
    return true;
}

} // namespace orvelle
