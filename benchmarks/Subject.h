#pragma once

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QHash>
#include <QProcess>
#include <QStringList>

namespace orvelle::bench {

/// The watcher's side of the protocol: https://www.freedesktop.org/wiki/Specifications/StatusNotifierItem
class Watcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost CONSTANT)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion CONSTANT)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    /// Takes the watcher's name on the session bus; ends the program when that fails.
    Watcher();

    bool hasHost() const { return true; }
    int protocolVersion() const { return 0; }
    QStringList items() const { return {}; }

public slots:
    void RegisterStatusNotifierItem(const QString &) { emit registered(); }
    void RegisterStatusNotifierHost(const QString &) {}

signals:
    void registered();
    void StatusNotifierItemRegistered(const QString &service);
    void StatusNotifierItemUnregistered(const QString &service);
    void StatusNotifierHostRegistered();
};

[[noreturn]] void fail(const QString &message);
void sleepInLoop(int milliseconds);

/// How often the threads of a process have gone to sleep of their own accord.
qint64 voluntarySwitches(qint64 pid);

/// What each thread of a process has done since it began.
struct Activity {
    struct Thread {
        qint64 switches = 0; ///< voluntary ones
        qint64 nanoseconds = 0;
    };
    QHash<QString, Thread> threads;
};
Activity activityOf(qint64 pid);
/// The sum over the threads of `now`; those that have ended since are left out.
Activity::Thread between(const Activity &before, const Activity &now);

double pssMiB(qint64 pid);

/// A program under measurement, running from construction to destruction.
class Subject
{
public:
    Subject(Watcher &watcher, const QString &program);
    ~Subject();
    Subject(const Subject &) = delete;
    Subject &operator=(const Subject &) = delete;

    double startMilliseconds() const { return m_startMilliseconds; }
    qint64 pid() const { return m_process.processId(); }

private:
    QProcess m_process;
    QElapsedTimer m_sinceStart;
    double m_startMilliseconds = 0;
};

} // namespace orvelle::bench
