#pragma once

#include "widgets/clipboard/ClipboardCache.h"
#include "widgets/clipboard/ClipboardReading.h"
#include "widgets/clipboard/ClipboardWork.h"

#include <QObject>

#include <memory>

namespace orvelle {

class Clock;
class DebugModeManager;
class Notifications;
class PowerEvents;
class Timer;
class UserDefaults;

/// The clipboard widget: its settings and the last things that the user
/// copied. The history is in memory only; pictures are files in the cache.
/// Main thread.
class ClipboardManager : public QObject
{
    Q_OBJECT

public:
    static constexpr double pollIntervalSeconds = 10.0;
    static constexpr qint64 maxImageBytes = ClipboardReading::maxImageBytes;
    static constexpr qsizetype maxHistoryCount = 10;

    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        const PowerEvents &powerEvents;
        Clock &clock;
        Pasteboard &pasteboard;
        ClipboardCache &cache;
        ClipboardReading::RichPreview richPreview;
    };
    explicit ClipboardManager(Services services, QObject *parent = nullptr);
    ~ClipboardManager() override;

    static QString defaultIconColor() { return QStringLiteral("purple"); }

    bool isEnabled() const { return m_isEnabled; }
    /// Turning the widget off empties the history.
    void setEnabled(bool enabled);
    bool menuBarOnly() const { return m_menuBarOnly; }
    void setMenuBarOnly(bool only);
    /// A key of the choosable colours, as it is stored.
    const QString &iconColor() const { return m_iconColor; }
    void setIconColor(const QString &color);

    /// The desktop shows no program in the background what is copied: the
    /// history stays empty, and nothing is looked at.
    bool isForbidden() const { return !m_services.pasteboard.isReadable(); }

    /// While paused nothing is read; the history stays. Ends with the program.
    bool isPaused() const { return m_isPaused; }
    void setPaused(bool paused);

    /// Newest first.
    const QList<ClipboardEntry> &clipboardHistory() const { return m_history; }

    /// Looks for changes from now on; what is on the pasteboard already is not
    /// recorded. Nothing happens while the widget is off or paused or the
    /// screens are dark.
    void startMonitoring();
    void stopMonitoring();
    /// One look at once. It reads when the change count has moved, and what it
    /// finds is announced later.
    void checkNow();
    /// Whether something that was copied is still being read.
    bool isReading() const { return m_reading != nullptr; }

    void clearHistory();
    /// Takes one entry out; nothing happens for an unknown id.
    void forget(const QString &id);

    enum class PasteAs { Copied, PlainText };
    /// Puts the entry back on the pasteboard, a picture a moment later. As
    /// plain text when it has one, otherwise as it was copied.
    void writeToPasteboard(const ClipboardEntry &entry, PasteAs as = PasteAs::Copied);

private:
    void load();
    void reload();
    void followEnabled(bool wasEnabled);
    void storedElsewhere();
    template<typename T>
    void set(T &member, const T &value, const char *key);
    void setScreensAsleep(bool asleep);
    void insert(ClipboardEntry entry);
    void moveToFront(const QString &id);
    void readingEnded();
    void changed();

    Services m_services;
    ClipboardWork m_work;
    bool m_isEnabled = false;
    bool m_menuBarOnly = false;
    QString m_iconColor;
    bool m_isPaused = false;
    bool m_isScreenAsleep = false;
    QList<ClipboardEntry> m_history;
    std::unique_ptr<Timer> m_pollTimer;
    int m_choices = 0; ///< of entries to paste
    qint64 m_lastChangeCount = 0;
    std::unique_ptr<ClipboardReading> m_reading;
};

} // namespace orvelle
