#pragma once

#include "base/Result.h"
#include "base/Timestamp.h"
#include "links/LinkItem.h"
#include "links/exchange/LinkExchange.h"

#include <QByteArray>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace orvelle {

/// The format that we write. Older documents are read like it; of newer ones
/// what we know.
constexpr qint64 exchangeVersion = 6;

/// A slot of the quick-launch row.
struct QuickLaunchApp {
    QUuid id;
    QString name;
    QString path;
    std::optional<QString> bundleIdentifier;
    friend bool operator==(const QuickLaunchApp &, const QuickLaunchApp &) = default;
};
using QuickLaunchSlots = QList<std::optional<QuickLaunchApp>>;

// The sections of settings, as raw values of their owners. Optional values are
// absent in documents of versions that did not have them.

struct ExportWeatherSettings {
    QString locationMode;
    QString manualCity;
    std::optional<QString> temperatureUnit;
    std::optional<bool> menuBarOnly;
    std::optional<QString> displayStyle;
    friend bool operator==(const ExportWeatherSettings &, const ExportWeatherSettings &) = default;
};

struct ExportSystemInfoSettings {
    QString displayMode;
    std::optional<bool> menuBarOnly;
    friend bool operator==(const ExportSystemInfoSettings &, const ExportSystemInfoSettings &) = default;
};

struct ExportNetworkSettings {
    QString displayMode;
    std::optional<bool> menuBarOnly;
    friend bool operator==(const ExportNetworkSettings &, const ExportNetworkSettings &) = default;
};

struct ExportClipboardSettings {
    bool isEnabled = false;
    std::optional<bool> menuBarOnly;
    std::optional<QString> iconColor;
    friend bool operator==(const ExportClipboardSettings &, const ExportClipboardSettings &) = default;
};

struct ExportCalendarSettings {
    bool isEnabled = false;
    std::optional<bool> menuBarOnly;
    std::optional<QString> iconColor;
    std::optional<qint64> maxEvents;
    std::optional<QString> displayScope; ///< the scope's number in decimal digits
    friend bool operator==(const ExportCalendarSettings &, const ExportCalendarSettings &) = default;
};

struct ExportGeneralSettings {
    std::optional<bool> confirmBeforeQuit;
    std::optional<QString> menuletIcon;
    std::optional<bool> globalShortcutEnabled;
    std::optional<qint64> globalShortcutKeyCode;
    std::optional<qint64> globalShortcutModifiers;
    friend bool operator==(const ExportGeneralSettings &, const ExportGeneralSettings &) = default;
};

/// The exchange document: the tree, with home paths as "~/...", and the
/// settings that travel.
struct ExportData {
    qint64 version = exchangeVersion;
    QString appVersion = QStringLiteral("unknown");
    QString appBuild = QStringLiteral("unknown");
    Timestamp exportDate;
    LinkList links;
    std::optional<bool> quickLaunchEnabled;
    std::optional<QuickLaunchSlots> quickLaunchApps; ///< empty slots are absent
    std::optional<QString> quickLaunchDisplayStyle;
    std::optional<ExportWeatherSettings> weatherSettings;
    std::optional<ExportSystemInfoSettings> systemInfoSettings;
    std::optional<ExportNetworkSettings> networkSettings;
    std::optional<ExportClipboardSettings> clipboardSettings;
    std::optional<ExportCalendarSettings> calendarSettings;
    std::optional<QStringList> widgetOrder;
    std::optional<ExportGeneralSettings> generalSettings;
    std::optional<QString> lastModifiedBy;
    std::optional<QString> lastModifiedByMachineId;
    std::optional<QString> checksum;
    std::optional<Timestamp> settingsModifiedAt;
    /// Of synchronised files: which versions of the file this one was made
    /// from, newest first, as sixteen hexadecimal digits each (syncVersionId()).
    std::optional<QString> syncHistory = {};
    friend bool operator==(const ExportData &, const ExportData &) = default;
};

/// The bytes of the file: JSON, pretty, the keys of every object sorted by
/// code point, dates as ISO 8601 in UTC with whole seconds, bytes as base64.
/// Reading and writing such bytes again gives the same bytes.
QByteArray encodeExchange(const ExportData &document);

/// Reads a document (at most maxExchangeBytes with at most maxExchangeItems
/// items). "version", "appVersion", "appBuild", "exportDate" and "links" are
/// required, and in a section that is there what is not optional above; null
/// reads as absent; of a repeated key the first counts; unknown keys are
/// ignored. One value of the wrong type fails the whole. Any thread; reports
/// up to `progressShare` permille.
Result<ExportData, ImportError> decodeExchange(const QByteArray &bytes, WorkProgress *progress = nullptr,
                                               int progressShare = 1000);

/// The form of which digests are taken: as the file's, but compact.
QByteArray encodeForChecksum(const LinkList &links);

/// SHA-256 of that form, as 64 lower-case hexadecimal digits.
QString linksChecksum(const LinkList &links);

/// Both digests of a document at once, since most of what they cover is the
/// same.
struct ExchangeDigests {
    QString links;      ///< linksChecksum() of its links
    QByteArray content; ///< over the links and, behind them, the sections of settings
};
ExchangeDigests exchangeDigests(const ExportData &document);

/// What a document says its links' digest is, and what it is.
struct ChecksumReport {
    std::optional<QString> stated;
    QString computed;
    bool matches() const { return stated == computed; }
};

/// Takes the digest of "links" as they stand in the document, with its keys
/// sorted, so that white space, order and escapes do not matter, but keys that
/// this version does not know do.
Result<ChecksumReport, ImportError> verifyExchange(const QByteArray &bytes);

/// The quick-launch slots as the settings store keeps them: compact, keys in
/// the record's order.
QByteArray encodeQuickLaunchSlots(const QuickLaunchSlots &apps);
/// Absent when the bytes are not such a list.
std::optional<QuickLaunchSlots> decodeQuickLaunchSlots(const QByteArray &bytes);

} // namespace orvelle
