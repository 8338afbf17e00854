#pragma once

#include <QDBusConnection>
#include <QDBusError>
#include <QObject>
#include <QVariantMap>

#include <functional>

namespace orvelle {

/// What a desktop portal answered.
struct PortalAnswer {
    enum class Kind {
        Done,
        Cancelled, ///< by the user
        Ended,     ///< by the desktop, without saying why
        Failed,    ///< the call itself; see `error`
    };
    Kind kind = Kind::Failed;
    QVariantMap results;
    QDBusError error;
};

/// One question to the desktop's portal (org.freedesktop.portal.Request): the
/// call, and the answer that comes as a signal when the user has decided.
/// Destroying it before withdraws the question. Main thread.
class PortalRequest : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const PortalAnswer &)>;

    struct Call {
        QString interface; ///< "GlobalShortcuts"
        QString method;
        QVariantList arguments; ///< those before the options
        QVariantMap options;    ///< without the token
    };
    /// `answered` runs once, from the event loop; it may destroy this.
    PortalRequest(const QDBusConnection &bus, const Call &call, Handler answered);
    ~PortalRequest() override;

    static QString service() { return QStringLiteral("org.freedesktop.portal.Desktop"); }
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    /// A name that no other request or session of this program has.
    static QString newToken();

private:
    void finish(const PortalAnswer &answer);

private slots:
    void responded(uint response, const QVariantMap &results);

private:
    QDBusConnection m_bus;
    Handler m_answered;
    QString m_handle; ///< where the answer comes from, by our token
};

} // namespace orvelle
