#include "app/cli/SyncCommands.h"

#include "app/cli/CommandLine.h"
#include "base/IsoDate.h"
#include "base/JsonWriter.h"
#include "platform/Clock.h"
#include "sync/SyncSetup.h"

#include <QCoreApplication>
#include <QDir>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

using namespace std::chrono_literals;

/// Below the time that another process waits for our answer.
constexpr auto patienceInside = 25s;
constexpr auto patienceAlone = 120s;

CommandResult takesTooLong()
{
    return CommandResult::refused(u"The synchronisation has not ended yet; orvelle sync status tells how it goes."_s);
}

/// Makes an answer that takes the first result, and sees to it that one comes.
CommandAnswer answeredInTime(const CommandContext &context, const CommandAnswer &answer)
{
    const auto waiting = std::make_shared<CommandAnswer>(answer);
    const CommandAnswer once = [waiting](const CommandResult &result) {
        if (const CommandAnswer still = std::exchange(*waiting, nullptr))
            still(result);
    };
    context.clock.after(context.app ? patienceInside : patienceAlone, QCoreApplication::instance(),
                        [once] { once(takesTooLong()); });
    return once;
}

QString isoText(Timestamp moment)
{
    const IsoDate date(moment);
    return QString::fromLatin1(date.text().data(), static_cast<qsizetype>(date.text().size()));
}

/// One that is printed: the key in JSON, and before the colon.
struct Line {
    const char *key;
    const char *label;
    QString value; ///< left out when empty
};

QString stateName(SyncControl &sync, const CommandContext &context)
{
    // A command on its own follows nothing, and looks at nothing for this.
    if (!context.app)
        return sync.autoSyncEnabled() ? u"notRunning"_s : rawValue(SyncStatus::State::Off);
    return rawValue(sync.status().state);
}

QList<Line> statusLines(SyncControl &sync, const CommandContext &context)
{
    const SyncStatus status = sync.status();
    const SyncPlace place = sync.place();
    const bool webDav = place.kind == SyncPlace::Kind::WebDav;
    return {{"state", "State", stateName(sync, context)},
            {"container", "Place", rawValue(place.kind)},
            {"folder", "Folder", place.folder},
            {"url", "Address", webDav ? place.server.toString() : QString()},
            {"user", "User", place.user},
            {"lastSyncDate", "Last synchronised", status.lastSyncDate ? isoText(*status.lastSyncDate) : QString()},
            {"lastSyncedFromDevice", "Last change from", status.lastSyncedFromDevice.value_or(QString())},
            {"failure", "Failure", status.failure},
            {"retryAt", "Next try", status.retryAt ? isoText(*status.retryAt) : QString()}};
}

QByteArray statusJson(SyncControl &sync, const CommandContext &context)
{
    const std::pair<const char *, bool> flags[] = {{"enabled", sync.autoSyncEnabled()},
                                                   {"needsUser", sync.status().needsUser()},
                                                   {"guard", sync.isGuardEnabled()},
                                                   {"encrypted", sync.isEncrypted()}};
    JsonWriter json;
    json.beginObject();
    for (const Line &line : statusLines(sync, context)) {
        if (line.value.isEmpty())
            continue;
        json.key(line.key);
        json.string(line.value);
    }
    for (const auto &[key, value] : flags) {
        json.key(key);
        json.boolean(value);
    }
    json.endObject();
    return json.take() + '\n';
}

QByteArray resultJson(const SyncResult &result)
{
    const std::pair<const char *, qint64> figures[] = {{"updated", result.updatedCount},
                                                       {"added", result.addedCount},
                                                       {"removed", result.removedCount},
                                                       {"duplicatesResolved", result.duplicatesResolved}};
    JsonWriter json;
    json.beginObject();
    for (const auto &[key, figure] : figures) {
        json.key(key);
        json.number(figure);
    }
    json.endObject();
    return json.take() + '\n';
}

QByteArray resultText(const SyncResult &result)
{
    return u"Updated: %1\nAdded: %2\nRemoved: %3\n"_s.arg(result.updatedCount)
        .arg(result.addedCount)
        .arg(result.removedCount)
        .toUtf8();
}

/// The place that the options name, or why they name none.
Result<SyncPlace, CommandResult> placeOf(const CommandArguments &arguments, const CommandContext &context)
{
    const bool folder = arguments.has(u"folder"_s);
    const bool webDav = arguments.has(u"webdav"_s);
    if (folder == webDav)
        return CommandResult::wrongUsage(u"sync configure needs --folder PATH, or --webdav URL with --user NAME"_s);
    if (folder && (arguments.has(u"user"_s) || arguments.has(u"password"_s)))
        return CommandResult::wrongUsage(u"A folder has no user and no password"_s);
    if (arguments.has(u"use-existing"_s) && arguments.has(u"create-new"_s))
        return CommandResult::wrongUsage(u"--use-existing and --create-new exclude each other"_s);
    if (folder) {
        const QString path = QDir(context.workingDirectory).absoluteFilePath(arguments.options.value(u"folder"_s));
        return SyncPlace{SyncPlace::Kind::Folder, QDir::cleanPath(path)};
    }
    return SyncPlace{SyncPlace::Kind::WebDav,
                     {},
                     serverFromText(arguments.options.value(u"webdav"_s)),
                     arguments.options.value(u"user"_s)};
}

CommandResult statusAfter(const CommandArguments &arguments, SyncControl &sync, const CommandContext &context,
                          const char *sentence)
{
    return CommandResult::done(arguments.has(u"json"_s) ? statusJson(sync, context) : QByteArray(sentence) + '\n');
}

CommandResult configured(const Result<ConfigureCloudSyncResult, QString> &outcome, const CommandArguments &arguments,
                         SyncControl &sync, const CommandContext &context)
{
    if (!outcome)
        return CommandResult::refused(outcome.error());
    switch (*outcome) {
    case ConfigureCloudSyncResult::ImportedExisting:
        return statusAfter(arguments, sync, context, "The links of the shared document were taken over.");
    case ConfigureCloudSyncResult::CreatedNew:
        return statusAfter(arguments, sync, context, "The links here are the shared document now.");
    case ConfigureCloudSyncResult::Cancelled:
        break;
    }
    return CommandResult::refused(
        u"There is a shared document already, and nothing was changed; say --use-existing or --create-new."_s);
}

} // namespace

CommandResult runSyncStatus(const CommandArguments &arguments, CommandContext &context)
{
    SyncControl &sync = context.sync();
    if (arguments.has(u"json"_s))
        return CommandResult::done(statusJson(sync, context));
    QString text;
    for (const Line &line : statusLines(sync, context)) {
        if (!line.value.isEmpty())
            text += QLatin1StringView(line.label) + u": "_s + printable(line.value) + u'\n';
    }
    return CommandResult::done(text.toUtf8());
}

void beginSyncNow(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    SyncControl &sync = context.sync();
    if (sync.place().kind == SyncPlace::Kind::None)
        return answer(CommandResult::refused(u"No place is chosen; see orvelle sync configure."_s));
    const bool json = arguments.has(u"json"_s);
    sync.syncNow([json, answer = answeredInTime(context, answer)](const Result<SyncResult, CloudSyncError> &outcome) {
        if (!outcome)
            answer(CommandResult::refused(outcome.error().description));
        else
            answer(CommandResult::done(json ? resultJson(*outcome) : resultText(*outcome)));
    });
}

void beginSyncConfigure(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    const auto place = placeOf(arguments, context);
    if (!place)
        return answer(place.error());
    const bool use = arguments.has(u"use-existing"_s);
    const bool create = arguments.has(u"create-new"_s);
    const auto ask = [use, create](const std::function<void(ConfigureCloudSyncResult)> &choose) {
        choose(use      ? ConfigureCloudSyncResult::ImportedExisting
               : create ? ConfigureCloudSyncResult::CreatedNew
                        : ConfigureCloudSyncResult::Cancelled);
    };
    const auto password =
        arguments.has(u"password"_s) ? std::optional(arguments.options.value(u"password"_s)) : std::nullopt;
    SyncControl &sync = context.sync();
    configureCloudSync(sync, *place, password, ask,
                       [context, arguments, &sync, answer = answeredInTime(context, answer)](
                           const Result<ConfigureCloudSyncResult, QString> &outcome) {
                           answer(configured(outcome, arguments, sync, context));
                       });
}

void beginSyncDisable(const CommandArguments &arguments, CommandContext &context, const CommandAnswer &answer)
{
    SyncControl &sync = context.sync();
    sync.disable([context, arguments, &sync, answer = answeredInTime(context, answer)] {
        answer(statusAfter(arguments, sync, context, "Synchronisation is off. The shared document stays where it is."));
    });
}

} // namespace orvelle
