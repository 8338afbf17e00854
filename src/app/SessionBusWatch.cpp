#include "app/SessionBusWatch.h"

#include "platform/Clock.h"

#include <QLoggingCategory>

namespace orvelle {

namespace {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcSessionBus, "SessionBus", QtInfoMsg)

constexpr std::chrono::seconds lookPeriod{2};

bool anotherBusAnswers()
{
    const QString name = u"orvelle-look"_s;
    const bool answers = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name).isConnected();
    QDBusConnection::disconnectFromBus(name);
    return answers;
}

} // namespace

SessionBusWatch::SessionBusWatch(const QDBusConnection &bus, Clock &clock, QObject *parent)
    : QObject(parent), m_clock(clock)
{
    if (bus.isConnected()) {
        QDBusConnection(bus).connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                                     u"Disconnected"_s, this, SLOT(busEnded()));
    }
}

SessionBusWatch::~SessionBusWatch() = default;

void SessionBusWatch::busEnded()
{
    qCInfo(lcSessionBus, "The session bus has ended");
    m_looks = m_clock.repeating(lookPeriod, [this] {
        if (anotherBusAnswers())
            emit busIsAnother();
    });
}

} // namespace orvelle
