#pragma once

#include "platform/Geocoder.h"
#include "platform/LocationService.h"

#include <QHash>

namespace orvelle::test {

/// Where the machine is, as a test tells it.
class FakeLocationService : public LocationService
{
public:
    Authorization allowed = Authorization::Authorized;
    int asked = 0;     ///< requestAuthorization
    int requested = 0; ///< requestLocation

    Authorization authorization() const override { return allowed; }
    void requestAuthorization() override { ++asked; }
    void requestLocation() override { ++requested; }

    void userDecides(Authorization decision)
    {
        allowed = decision;
        emit authorizationChanged();
    }
    void machineIsAt(const Coordinates &place) { emit located(place); }
    void findsNothing(const QString &reason) { emit failed(reason); }
};

/// The map as a test tells it; what it does not know it answers with no place.
/// Answers arrive when the test says deliver().
class FakeGeocoder : public Geocoder
{
public:
    using Found = Result<QList<Placemark>, QString>;

    QStringList asked; ///< addresses, and "reverse" for each place
    QHash<QString, Found> places;
    Found names = QList<Placemark>{};

    std::unique_ptr<GeocoderCall> geocode(const QString &address, Done done) override
    {
        asked += address;
        return wait([found = places.value(address, Found(QList<Placemark>{})), done] { done(found); });
    }
    std::unique_ptr<GeocoderCall> reverse(const Coordinates &, Done done) override
    {
        asked += QStringLiteral("reverse");
        return wait([this, done] { done(names); });
    }

    void deliver()
    {
        const auto waiting = std::exchange(m_waiting, {});
        for (const auto &answer : waiting)
            answer();
    }

private:
    struct Call : GeocoderCall {
        Call(FakeGeocoder &g, int i) : geocoder(g), id(i) {}
        ~Call() override { geocoder.m_waiting.remove(id); }
        FakeGeocoder &geocoder;
        int id;
    };

    std::unique_ptr<GeocoderCall> wait(std::function<void()> answer)
    {
        m_waiting.insert(++m_lastId, std::move(answer));
        return std::make_unique<Call>(*this, m_lastId);
    }

    QHash<int, std::function<void()>> m_waiting;
    int m_lastId = 0;
};

} // namespace orvelle::test
