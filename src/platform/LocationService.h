#pragma once

#include <QObject>
#include <QString>

namespace orvelle {

/// A place on the earth: degrees of WGS 84, north and east positive.
struct Coordinates {
    double latitude = 0;  ///< -90 to 90
    double longitude = 0; ///< -180 to 180
    friend bool operator==(const Coordinates &, const Coordinates &) = default;
};

/// Whether both numbers are finite and within their ranges.
constexpr bool isValid(const Coordinates &place)
{
    // A comparison with NaN never holds.
    return place.latitude >= -90 && place.latitude <= 90 && place.longitude >= -180 && place.longitude <= 180;
}

/// Where this machine is, as far as the system tells and the user allows.
/// Nothing is asked of the system before requestAuthorization() or
/// requestLocation(). Main thread; signals come from the event loop, never
/// from inside a call.
class LocationService : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    enum class Authorization {
        NotDetermined,
        Authorized,
        Denied,
        Restricted, ///< there is no service that could be asked
    };

    virtual Authorization authorization() const = 0;
    /// Asks for permission while the application is in use;
    /// authorizationChanged() follows.
    virtual void requestAuthorization() = 0;
    /// Asks for the place once: located() or failed() follows. A request while
    /// another is on its way joins it.
    virtual void requestLocation() = 0;

signals:
    void authorizationChanged();
    /// Always valid coordinates.
    void located(const orvelle::Coordinates &place);
    /// `reason` is for the log.
    void failed(const QString &reason);
};

} // namespace orvelle
