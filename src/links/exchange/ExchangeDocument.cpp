#include "links/exchange/ExchangeDocument.h"

#include "base/Hash.h"
#include "base/Text.h"
#include "links/RecordCodec.h"

namespace orvelle {

template<>
struct RecordTable<QuickLaunchApp> {
    // Written in this order in the settings store; sorted in the document.
    static constexpr std::array stored = {
        recordField<&QuickLaunchApp::id>("id", true),
        recordField<&QuickLaunchApp::name>("name", true),
        recordField<&QuickLaunchApp::path>("path", true),
        recordField<&QuickLaunchApp::bundleIdentifier>("bundleIdentifier"),
    };
    static constexpr std::array fields = sortedByKey(stored);
};

template<>
struct RecordTable<ExportWeatherSettings> {
    static constexpr std::array fields = sortedByKey(std::array{
        recordField<&ExportWeatherSettings::locationMode>("locationMode", true),
        recordField<&ExportWeatherSettings::manualCity>("manualCity", true),
        recordField<&ExportWeatherSettings::temperatureUnit>("temperatureUnit"),
        recordField<&ExportWeatherSettings::menuBarOnly>("menuBarOnly"),
        recordField<&ExportWeatherSettings::displayStyle>("displayStyle"),
    });
};

template<>
struct RecordTable<ExportSystemInfoSettings> {
    static constexpr std::array fields = sortedByKey(std::array{
        recordField<&ExportSystemInfoSettings::displayMode>("displayMode", true),
        recordField<&ExportSystemInfoSettings::menuBarOnly>("menuBarOnly"),
    });
};

template<>
struct RecordTable<ExportNetworkSettings> {
    static constexpr std::array fields = sortedByKey(std::array{
        recordField<&ExportNetworkSettings::displayMode>("displayMode", true),
        recordField<&ExportNetworkSettings::menuBarOnly>("menuBarOnly"),
    });
};

template<>
struct RecordTable<ExportClipboardSettings> {
    static constexpr std::array fields = sortedByKey(std::array{
        recordField<&ExportClipboardSettings::isEnabled>("isEnabled", true),
        recordField<&ExportClipboardSettings::menuBarOnly>("menuBarOnly"),
        recordField<&ExportClipboardSettings::iconColor>("iconColor"),
    });
};

template<>
struct RecordTable<ExportCalendarSettings> {
    static constexpr std::array fields = sortedByKey(std::array{
        recordField<&ExportCalendarSettings::isEnabled>("isEnabled", true),
        recordField<&ExportCalendarSettings::menuBarOnly>("menuBarOnly"),
        recordField<&ExportCalendarSettings::iconColor>("iconColor"),
        recordField<&ExportCalendarSettings::maxEvents>("maxEvents"),
        recordField<&ExportCalendarSettings::displayScope>("displayScope"),
    });
};

template<>
struct RecordTable<ExportGeneralSettings> {
    static constexpr std::array fields = sortedByKey(std::array{
        recordField<&ExportGeneralSettings::confirmBeforeQuit>("confirmBeforeQuit"),
        recordField<&ExportGeneralSettings::menuletIcon>("menuletIcon"),
        recordField<&ExportGeneralSettings::globalShortcutEnabled>("globalShortcutEnabled"),
        recordField<&ExportGeneralSettings::globalShortcutKeyCode>("globalShortcutKeyCode"),
        recordField<&ExportGeneralSettings::globalShortcutModifiers>("globalShortcutModifiers"),
    });
};

template<>
struct RecordTable<ExportData> {
    static constexpr std::array settings = {
        recordField<&ExportData::quickLaunchEnabled>("quickLaunchEnabled"),
        recordField<&ExportData::quickLaunchApps>("quickLaunchApps"),
        recordField<&ExportData::quickLaunchDisplayStyle>("quickLaunchDisplayStyle"),
        recordField<&ExportData::weatherSettings>("weatherSettings"),
        recordField<&ExportData::systemInfoSettings>("systemInfoSettings"),
        recordField<&ExportData::networkSettings>("networkSettings"),
        recordField<&ExportData::clipboardSettings>("clipboardSettings"),
        recordField<&ExportData::calendarSettings>("calendarSettings"),
        recordField<&ExportData::widgetOrder>("widgetOrder"),
        recordField<&ExportData::generalSettings>("generalSettings"),
    };
    static constexpr std::array fields = sortedByKey(std::array{
        recordField<&ExportData::version>("version", true),
        recordField<&ExportData::appVersion>("appVersion", true),
        recordField<&ExportData::appBuild>("appBuild", true),
        recordField<&ExportData::exportDate>("exportDate", true),
        recordField<&ExportData::links>("links", true),
        settings[0],
        settings[1],
        settings[2],
        settings[3],
        settings[4],
        settings[5],
        settings[6],
        settings[7],
        settings[8],
        settings[9],
        recordField<&ExportData::lastModifiedBy>("lastModifiedBy"),
        recordField<&ExportData::lastModifiedByMachineId>("lastModifiedByMachineId"),
        recordField<&ExportData::checksum>("checksum"),
        recordField<&ExportData::settingsModifiedAt>("settingsModifiedAt"),
        recordField<&ExportData::syncHistory>("syncHistory"),
    });
};

namespace {

ImportError undecodable(const JsonError &error)
{
    return {error.tooDeep ? ImportError::Kind::TooDeep : ImportError::Kind::Undecodable, error.reason};
}

Result<JsonDocument, ImportError> parsed(const QByteArray &bytes)
{
    if (bytes.size() > maxExchangeBytes)
        return ImportError{ImportError::Kind::TooLarge, {}};
    auto json = JsonDocument::parseInPlace(bytes);
    if (!json)
        return undecodable(json.error());
    return std::move(json).value();
}

/// Counts the items of a document while it is read.
class Admission
{
public:
    Admission(WorkProgress *progress, int share) : m_progress(progress), m_share(share) {}

    bool admit()
    {
        ++m_count;
        if (m_progress && m_count % reportEvery == 0) {
            // How many there are is known at the end only.
            const qint64 share = m_share * m_count / (m_count + reportEvery * 20);
            m_progress->permille = static_cast<int>(share);
        }
        return m_count <= maxExchangeItems && !isCancelled();
    }
    bool isCancelled() const { return m_progress && m_progress->cancelled; }

    std::optional<ImportError> refusal() const
    {
        if (isCancelled())
            return ImportError{ImportError::Kind::Cancelled, {}};
        if (m_count > maxExchangeItems)
            return ImportError{ImportError::Kind::TooManyItems, {}};
        return std::nullopt;
    }

private:
    static constexpr qint64 reportEvery = 256;
    WorkProgress *m_progress;
    int m_share;
    qint64 m_count = 0;
};

/// A JSON value as it is, but with the keys of its objects sorted.
void writeCanonical(JsonWriter &writer, JsonValue value);

void writeCanonicalObject(JsonWriter &writer, JsonValue object)
{
    std::vector<std::pair<std::string_view, JsonValue>> members;
    object.forEachMember([&members](std::string_view key, JsonValue value) {
        members.emplace_back(key, value);
        return true;
    });
    std::stable_sort(members.begin(), members.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    const auto repeated =
        std::unique(members.begin(), members.end(), [](const auto &a, const auto &b) { return a.first == b.first; });
    members.erase(repeated, members.end());
    writer.beginObject();
    for (const auto &[key, value] : members) {
        writer.textKey(textFromUtf8(key));
        writeCanonical(writer, value);
    }
    writer.endObject();
}

void writeCanonical(JsonWriter &writer, JsonValue value)
{
    if (value.isObject()) {
        writeCanonicalObject(writer, value);
    } else if (value.isArray()) {
        writer.beginArray();
        value.forEachElement([&writer](JsonValue element) {
            writeCanonical(writer, element);
            return true;
        });
        writer.endArray();
    } else if (const auto text = value.asString()) {
        writer.string(textFromUtf8(*text));
    } else if (const auto flag = value.asBool()) {
        writer.boolean(*flag);
    } else if (const auto whole = value.asInt()) {
        writer.number(*whole);
    } else if (const auto number = value.asDouble()) {
        writer.number(*number);
    } else {
        writer.null();
    }
}

QByteArray encodeSettings(const ExportData &document)
{
    JsonWriter writer;
    RecordEncoding encoding{writer, RecordForm::Exchange};
    writeRecordFields(encoding, RecordTable<ExportData>::settings, document);
    return writer.take();
}

} // namespace

QByteArray encodeExchange(const ExportData &document)
{
    JsonWriter writer(JsonWriter::Style::Pretty);
    RecordEncoding encoding{writer, RecordForm::Exchange};
    writeRecordValue(encoding, document);
    return writer.take();
}

Result<ExportData, ImportError> decodeExchange(const QByteArray &bytes, WorkProgress *progress, int progressShare)
{
    const auto json = parsed(bytes);
    if (!json)
        return json.error();
    Admission admission(progress, progressShare);
    RecordDecoding decoding;
    decoding.form = RecordForm::Exchange;
    decoding.admit = [&admission] { return admission.admit(); };
    ExportData document;
    if (readRecordValue(document, json->root(), decoding))
        return document;
    return admission.refusal().value_or(ImportError{ImportError::Kind::Undecodable, decoding.place()});
}

QByteArray encodeForChecksum(const LinkList &links)
{
    JsonWriter writer;
    RecordEncoding encoding{writer, RecordForm::Exchange};
    writeRecordValue(encoding, links);
    return writer.take();
}

QString linksChecksum(const LinkList &links)
{
    return sha256Hex(encodeForChecksum(links));
}

ExchangeDigests exchangeDigests(const ExportData &document)
{
    Sha256 hash;
    hash.add(encodeForChecksum(document.links));
    const QString links = hash.hex();
    hash.add(encodeSettings(document));
    return {links, hash.hex().toLatin1()};
}

Result<ChecksumReport, ImportError> verifyExchange(const QByteArray &bytes)
{
    const auto json = parsed(bytes);
    if (!json)
        return json.error();
    const auto links = json->root().member("links");
    if (!links || !links->isArray())
        return ImportError{ImportError::Kind::Undecodable, QStringLiteral("links")};
    JsonWriter writer;
    writeCanonical(writer, *links);
    return ChecksumReport{jsonText(json->root().member("checksum")), sha256Hex(writer.take())};
}

QByteArray encodeQuickLaunchSlots(const QuickLaunchSlots &apps)
{
    JsonWriter writer;
    RecordEncoding encoding{writer};
    writer.beginArray();
    for (const auto &app : apps) {
        if (app)
            writeRecordFields(encoding, RecordTable<QuickLaunchApp>::stored, *app);
        else
            writer.null();
    }
    writer.endArray();
    return writer.take();
}

std::optional<QuickLaunchSlots> decodeQuickLaunchSlots(const QByteArray &bytes)
{
    const auto json = JsonDocument::parseInPlace(bytes);
    QuickLaunchSlots apps;
    RecordDecoding decoding;
    if (!json || !readRecordValue(apps, json->root(), decoding))
        return std::nullopt;
    return apps;
}

} // namespace orvelle
