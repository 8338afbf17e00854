#include "links/LinkEditing.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeSettings.h"
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

// What was taken over last, and what became of it here: two digests.
QString settingsTakenBaseKey()
{
    return u"orvelle_settingsTaken"_s;
}

QString dateText(const std::optional<Timestamp> &date)
{
    return date ? date->toDateTime().toString(Qt::ISODateWithMs) : u"nil"_s;
}

Timestamp wholeSeconds(Timestamp date)
{
    return {std::floor(date.seconds)};
}

/// Of what travels: the unit of temperatures is each machine's own.
QString settingsDigest(ExportData document)
{
    document.links.clear();
    if (document.weatherSettings)
        document.weatherSettings->temperatureUnit.reset();
    return QString::fromLatin1(exchangeDigests(document).content);
}

QString takenText(const QString &theirs, const QString &here)
{
    return theirs + u' ' + here;
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
    const auto before = localSettingsModifiedAt();
    Timestamp date = editDate(before, s.clock.now());
    if (before && isInDocument(*before) && wholeSeconds(date) == wholeSeconds(*before))
        date = wholeSeconds(date) + 1; // or it would be as old there as what it changed
    setLocalSettingsModifiedAt(date);
}

/// Whether other machines may know settings of that date. Dates that were taken
/// over have no fraction.
bool CloudSync::Private::isInDocument(Timestamp settings) const
{
    return settings == wholeSeconds(settings) || (seen && seen->settings == settings) ||
           (upload && upload->settings == settings);
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
    takeSettings(*document.content.document);
}

void CloudSync::Private::takeSettings(const ExportData &document)
{
    isApplyingRemoteSettings = true;
    s.settings.apply(document);
    setLocalSettingsModifiedAt(document.settingsModifiedAt);
    isApplyingRemoteSettings = false;
    const QString theirs = settingsDigest(document);
    const QString here = settingsDigest(s.exchange.gatherDocument());
    store(settingsTakenBaseKey(),
          theirs == here ? std::nullopt : std::optional<DefaultsValue>(takenText(theirs, here)));
}

/// Whether the settings here are to be written over the document's. Of two that
/// are equally old neither machine takes the other's, so the one with the
/// greater digest becomes newer. The other one shows what it has, as nobody
/// else may know that there are two. Only one of them is ever made newer, and
/// taking that one ends it.
bool CloudSync::Private::settingsAreNewer(const SyncDocument &document)
{
    const auto theirs = document.content.document->settingsModifiedAt;
    const auto ours = localSettingsModifiedAt();
    if (!ours || !theirs)
        return ours.has_value();
    if (wholeSeconds(*ours) != *theirs)
        return *ours > *theirs;
    const QString there = settingsDigest(*document.content.document);
    const QString here = settingsDigest(s.exchange.gatherDocument());
    // What cannot be had here, such as a section that the document lacks, is
    // no difference once the document was taken over.
    if (there == here || s.defaults.get<QString>(key(settingsTakenBaseKey())) == takenText(there, here))
        return false;
    if (here > there)
        setLocalSettingsModifiedAt(*theirs + 1);
    return true;
}

} // namespace orvelle
