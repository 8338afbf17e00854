#pragma once

#include <QDBusConnection>
#include <QString>

#include <span>

namespace orvelle {

/// A signal of some service's object and the slot that takes it, as SLOT()
/// writes it.
struct BusSignal {
    QString path;
    QString interface;
    QString name;
    const char *slot;
};

/// Connects the service's signals to the slots of `receiver`, or disconnects
/// them. One that cannot be heard is logged; the others are connected.
void hearSignals(QDBusConnection &bus, const QString &service, std::span<const BusSignal> heard, QObject *receiver,
                 bool on);

} // namespace orvelle
