#pragma once

#include "app/cli/CommandResult.h"

#include <QDBusConnection>
#include <QStringList>

#include <functional>
#include <optional>

namespace orvelle {

/// Whether this login has a session bus. Where it has none, keeps every
/// library from starting one behind our back. Call before anything connects.
bool prepareSessionBus();

QString busName();       ///< "org.orvelle.Orvelle"
QString busObjectPath(); ///< "/org/orvelle/Orvelle"

/// Reaches the running application (org.freedesktop.Application, Desktop Entry
/// Specification; and our own org.orvelle.Orvelle1). Every call blocks until
/// the answer is there; an absent value means that no application runs, or
/// that it ended before it answered.
class RunningInstance
{
public:
    explicit RunningInstance(const QDBusConnection &bus) : m_bus(bus) {}

    bool exists() const;
    /// With `onlyOnce`, an application that got the command but ended or hung
    /// before it answered counts as a refusal: it may have done it.
    std::optional<CommandResult> run(const QStringList &arguments, const QString &workingDirectory,
                                     bool onlyOnce = false) const;
    /// False when nobody answered.
    bool activate() const;
    bool open(const QStringList &paths) const;
    /// Waits until the application has let go of its name, at most 5 s; false
    /// when it has it still.
    bool waitUntilGone() const;

private:
    QDBusMessage call(const QString &interface, const QString &method, const QVariantList &arguments) const;

    QDBusConnection m_bus;
};

/// What others may ask of the application over the bus.
struct BusRequests {
    std::function<void()> activate;
    std::function<void(const QStringList &paths)> open;
    std::function<void(const QString &name)> action;
    std::function<void(const QStringList &arguments, const QString &workingDirectory, const CommandAnswer &)> run;
};

/// Our objects and name on the bus.
class BusService : public QObject
{
    Q_OBJECT

public:
    /// Requests are answered from the event loop on.
    BusService(const QDBusConnection &bus, BusRequests requests, QObject *parent = nullptr);
    ~BusService() override;

    /// Becomes the one application of this session. False when there is one.
    bool acquireName();

private:
    QDBusConnection m_bus;
    BusRequests m_requests;
};

} // namespace orvelle
