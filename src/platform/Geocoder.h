#pragma once

#include "base/Result.h"
#include "platform/LocationService.h"

#include <QList>

#include <functional>
#include <memory>
#include <optional>

namespace orvelle {

/// A place with its names; an empty text where there is none.
struct Placemark {
    std::optional<Coordinates> location;
    QString locality;           ///< city, town or village
    QString administrativeArea; ///< state, region or county
};

/// A look-up on its way. Destroying it cancels it; its callback is then never
/// called.
class GeocoderCall
{
public:
    virtual ~GeocoderCall() = default;
};

/// Turns the text of an address into places, and a place into names, in the
/// user's language. Main thread; callbacks run from the event loop, never from
/// inside a call, and may destroy the look-up.
class Geocoder
{
public:
    /// The best match first, possibly none; or what went wrong, for the log.
    using Done = std::function<void(const Result<QList<Placemark>, QString> &)>;

    virtual ~Geocoder() = default;
    [[nodiscard]] virtual std::unique_ptr<GeocoderCall> geocode(const QString &address, Done done) = 0;
    [[nodiscard]] virtual std::unique_ptr<GeocoderCall> reverse(const Coordinates &place, Done done) = 0;
};

} // namespace orvelle
