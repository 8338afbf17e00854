#include "platform/freedesktop/BusSignals.h"

#include <QLoggingCategory>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcBus, "DBus", QtInfoMsg)

} // namespace

void hearSignals(QDBusConnection &bus, const QString &service, std::span<const BusSignal> heard, QObject *receiver,
                 bool on)
{
    for (const BusSignal &each : heard) {
        const bool done = on ? bus.connect(service, each.path, each.interface, each.name, receiver, each.slot)
                             : bus.disconnect(service, each.path, each.interface, each.name, receiver, each.slot);
        if (!done)
            qCWarning(lcBus, "The signal %ls of %ls cannot be heard", qUtf16Printable(each.name),
                      qUtf16Printable(service));
    }
}

} // namespace orvelle
