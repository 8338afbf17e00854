#pragma once

#include "platform/DistantFiles.h"

#include <QObject>
#include <QStringList>

#include <chrono>
#include <functional>

namespace orvelle {

class Alerts;
class AppWindows;
class Clock;
class ExchangeImporter;
class MenuBarManager;
class PowerEvents;
class StartupJobs;
class UserDefaults;
struct Alert;

/// The application's life: what starts when, what happens to documents that
/// the desktop hands over, and whether a wish to quit is granted. Main thread.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    struct Services {
        MenuBarManager &menuBar;
        StartupJobs &jobs;
        UserDefaults &defaults;
        Clock &clock;
        Alerts &alerts;
        AppWindows &windows;
        PowerEvents &powerEvents;
        ExchangeImporter &importer;
        /// Lets look at what may lie on a disk that does not answer.
        std::function<void(const QString &path, const DistantFiles::Look &look)> look;
        /// Stores what is not stored yet; false when that failed.
        std::function<bool()> save;
        /// Brings the application's windows to the front.
        std::function<void()> activateApp;
    };

    /// Late enough not to compete with the first display of the icon.
    static constexpr std::chrono::milliseconds faviconDelay{1000};
    static constexpr std::chrono::milliseconds updateDelay{3000};
    static constexpr std::chrono::milliseconds tipDelay{5000};

    explicit AppDelegate(const Services &services, QObject *parent = nullptr);

    void applicationDidFinishLaunching();

    /// Documents from the desktop, as absolute paths. Those whose name does
    /// not end in ".ovexport" (any case) are ignored; those larger than
    /// maxExchangeBytes are refused unread.
    void openFiles(const QStringList &paths);

    using Decide = std::function<void(bool terminate)>;
    /// Decides about a wish to quit, if need be by asking; also before changes
    /// are lost that cannot be stored. `decide` is called once: true means quit
    /// now. While a question is open, further wishes are refused.
    void applicationShouldTerminate(const Decide &decide);

    /// Set once the machine or the session ends; never cleared.
    bool isSystemShutdown() const { return m_isSystemShutdown; }

private:
    void openDocument(const QString &path);
    void askHowToImport(const QString &fileName, const QByteArray &data);
    void reportUnreadable(const QString &reason);
    void ask(const Alert &alert, const std::function<void(int button)> &answered);
    void confirmQuit(const Decide &decide);
    void saveBeforeQuit(const Decide &decide);

    Services m_services;
    bool m_isSystemShutdown = false;
    bool m_asking = false;
};

} // namespace orvelle
