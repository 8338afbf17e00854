#include "widgets/clipboard/ClipboardManager.h"

#include "base/Notifications.h"
#include "platform/Clock.h"
#include "platform/PowerEvents.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"
#include "widgets/clipboard/ClipboardEntries.h"
#include "widgets/clipboard/ClipboardImages.h"
#include "widgets/clipboard/ClipboardLog.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcClipboard, "Clipboard", QtInfoMsg)

namespace {

constexpr char enabledKey[] = "ClipboardEnabled";
constexpr char menuBarOnlyKey[] = "ClipboardMenuBarOnly";
constexpr char iconColorKey[] = "ClipboardIconColor";

constexpr std::chrono::milliseconds pollInterval{static_cast<qint64>(ClipboardManager::pollIntervalSeconds * 1000)};

QString keyOf(const DebugModeManager &debugMode, const char *base)
{
    return debugMode.key(QString::fromLatin1(base));
}

} // namespace

ClipboardManager::ClipboardManager(Services services, QObject *parent)
    : QObject(parent), m_services(std::move(services))
{
    load();
    connect(&m_services.notifications, &Notifications::debugModeChanged, this, &ClipboardManager::reload);
    // An import writes the settings and announces the change for us.
    connect(&m_services.notifications, &Notifications::clipboardChanged, this, &ClipboardManager::storedElsewhere);
    connect(&m_services.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        const std::array own{enabledKey, menuBarOnlyKey, iconColorKey};
        if (std::ranges::any_of(own, [&](const char *key) { return keys.contains(keyOf(m_services.debugMode, key)); }))
            reload();
    });
    connect(&m_services.powerEvents, &PowerEvents::screensDidSleep, this, [this] { setScreensAsleep(true); });
    connect(&m_services.powerEvents, &PowerEvents::screensDidWake, this, [this] { setScreensAsleep(false); });
}

ClipboardManager::~ClipboardManager() = default;

void ClipboardManager::load()
{
    const UserDefaults &defaults = m_services.defaults;
    const DebugModeManager &debug = m_services.debugMode;
    m_isEnabled = defaults.get<bool>(keyOf(debug, enabledKey)).value_or(false);
    m_menuBarOnly = defaults.get<bool>(keyOf(debug, menuBarOnlyKey)).value_or(false);
    m_iconColor = defaults.get<QString>(keyOf(debug, iconColorKey)).value_or(defaultIconColor());
}

void ClipboardManager::followEnabled(bool wasEnabled)
{
    if (m_isEnabled == wasEnabled)
        return;
    if (m_isEnabled) {
        startMonitoring();
        return;
    }
    stopMonitoring();
    clearHistory();
}

void ClipboardManager::reload()
{
    const bool wasEnabled = m_isEnabled;
    load();
    followEnabled(wasEnabled);
    changed();
}

/// After our own announcements there is nothing new, so this ends at once.
void ClipboardManager::storedElsewhere()
{
    const bool wasEnabled = m_isEnabled;
    load();
    followEnabled(wasEnabled);
}

void ClipboardManager::changed()
{
    emit m_services.notifications.clipboardChanged();
}

/// A failed write is reported by the store itself, and the old value then
/// holds again with the next announcement.
template<typename T>
void ClipboardManager::set(T &member, const T &value, const char *key)
{
    if (member == value)
        return;
    const bool wasEnabled = m_isEnabled;
    member = value;
    static_cast<void>(m_services.defaults.write(keyOf(m_services.debugMode, key), value));
    followEnabled(wasEnabled);
    changed();
    emit m_services.notifications.syncableSettingsChanged();
}

void ClipboardManager::setEnabled(bool enabled)
{
    set(m_isEnabled, enabled, enabledKey);
}

void ClipboardManager::setMenuBarOnly(bool only)
{
    set(m_menuBarOnly, only, menuBarOnlyKey);
}

void ClipboardManager::setIconColor(const QString &color)
{
    set(m_iconColor, color, iconColorKey);
}

void ClipboardManager::setPaused(bool paused)
{
    if (paused == m_isPaused)
        return;
    m_isPaused = paused;
    if (paused)
        stopMonitoring();
    else
        startMonitoring();
    changed();
}

void ClipboardManager::setScreensAsleep(bool asleep)
{
    m_isScreenAsleep = asleep;
    if (asleep)
        stopMonitoring();
    else
        startMonitoring();
}

void ClipboardManager::startMonitoring()
{
    if (!m_isEnabled || m_isPaused || m_isScreenAsleep || isForbidden())
        return;
    m_lastChangeCount = m_services.pasteboard.changeCount();
    m_pollTimer = m_services.clock.repeating(pollInterval, [this] { checkNow(); });
}

void ClipboardManager::stopMonitoring()
{
    m_pollTimer.reset();
    m_reading.reset();
}

void ClipboardManager::checkNow()
{
    const qint64 count = m_services.pasteboard.changeCount();
    if (!m_pollTimer || count == m_lastChangeCount)
        return;
    m_lastChangeCount = count;
    m_reading = std::make_unique<ClipboardReading>(
        ClipboardReading::Services{m_services.pasteboard, m_work, m_services.cache, m_services.richPreview});
    connect(m_reading.get(), &ClipboardReading::finished, this, [this](const std::optional<ClipboardEntry> &entry) {
        // What is there now may have come in between, with or without a mark
        // that it is secret. The next look is at that.
        const bool isCurrent = m_services.pasteboard.changeCount() == m_lastChangeCount;
        readingEnded();
        if (entry && isCurrent)
            insert(*entry);
        else if (entry)
            entry->payload.cleanup();
    });
    connect(m_reading.get(), &ClipboardReading::foundOwn, this, [this](const QString &id) {
        readingEnded();
        moveToFront(id);
    });
    m_reading->start();
}

/// Called from inside the reading.
void ClipboardManager::readingEnded()
{
    m_reading.release()->deleteLater();
}

void ClipboardManager::insert(ClipboardEntry entry)
{
    const auto same = std::ranges::find(m_history, entry);
    if (same != m_history.end()) {
        // The file that is there already does for both.
        if (entry.payload.kind == ClipboardPayload::Kind::Image && QFileInfo::exists(same->payload.path)) {
            entry.payload.cleanup();
            entry.payload = same->payload;
        }
        m_history.erase(same);
    }
    m_history.prepend(std::move(entry));
    while (m_history.size() > maxHistoryCount)
        m_history.takeLast().payload.cleanup();
    changed();
}

void ClipboardManager::moveToFront(const QString &id)
{
    const auto entry = std::ranges::find(m_history, id, &ClipboardEntry::id);
    if (entry == m_history.end() || entry == m_history.begin())
        return;
    std::rotate(m_history.begin(), entry, entry + 1);
    changed();
}

void ClipboardManager::clearHistory()
{
    m_reading.reset();
    for (const ClipboardEntry &entry : std::as_const(m_history))
        entry.payload.cleanup();
    m_history.clear();
    m_services.cache.reset();
    changed();
}

void ClipboardManager::forget(const QString &id)
{
    const auto entry = std::ranges::find(m_history, id, &ClipboardEntry::id);
    if (entry == m_history.end())
        return;
    entry->payload.cleanup();
    m_history.erase(entry);
    changed();
}

void ClipboardManager::writeToPasteboard(const ClipboardEntry &entry, PasteAs as)
{
    Pasteboard &pasteboard = m_services.pasteboard;
    const int choice = ++m_choices;
    if (as == PasteAs::PlainText && entry.payload.canPasteAsPlainText()) {
        pasteboard.write({{Pasteboard::textType(), entry.payload.text.toUtf8()}});
        return;
    }
    const PasteboardItem mark{ownEntryType(), entry.id.toUtf8()};
    if (entry.payload.kind != ClipboardPayload::Kind::Image) {
        const QList<PasteboardItem> forms = pasteboardForms(entry.payload);
        pasteboard.write(forms.isEmpty() ? forms : forms + QList{mark});
        return;
    }
    const qint64 before = pasteboard.changeCount();
    pasteboard.write({});
    m_work.load(
        this, [payload = entry.payload] { return ClipboardImages::formsOf(payload); },
        [this, &pasteboard, mark, choice, before](const QList<PasteboardItem> &picture) {
            // Emptying it counts once at most; what came after that is newer.
            const bool isOvertaken = m_choices != choice || pasteboard.changeCount() > before + 1;
            if (!picture.isEmpty() && !isOvertaken)
                pasteboard.write(picture + QList{mark});
        });
}

} // namespace orvelle
