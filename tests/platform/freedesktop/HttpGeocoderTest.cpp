#include "platform/freedesktop/http/HttpGeocoder.h"

#include "support/FakeClock.h"
#include "support/FakeHttp.h"
#include "support/Hostile.h"

#include <QUrlQuery>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Found = Result<QList<Placemark>, QString>;

const QByteArray springfields = R"({"results":[
    {"name":"Springfield","latitude":37.2,"longitude":-93.3,"country":"United States","country_code":"US","admin1":"Missouri"},
    {"name":"Springfield","latitude":39.8,"longitude":-89.6,"country":"United States","country_code":"US","admin1":"Illinois"},
    {"name":"Springfield","latitude":-43.3,"longitude":171.9,"country":"New Zealand","country_code":"NZ","admin1":"Canterbury"}]})";

class HttpGeocoderTest : public testing::Test
{
protected:
    /// What the service answers a look-up of the address with.
    Found look(const QString &address)
    {
        std::optional<Found> found;
        const auto call = geocoder.geocode(address, [&found](const Found &answer) { found = answer; });
        http.deliver();
        clock.advance(1s);
        return found.value_or(Found(u"no answer"_s));
    }

    FakeHttp http;
    FakeClock clock;
    HttpGeocoder geocoder{{http, clock, [] { return QUrl(u"https://forward.example"_s); },
                           [] { return QUrl(u"https://reverse.example"_s); }}};
};

TEST_F(HttpGeocoderTest, WhatFollowsTheCommaDecidesAmongNamesakes)
{
    http.answers(u"https://forward.example/v1/search?*"_s, 200, springfields);
    struct {
        const char16_t *address;
        const char16_t *area;
    } const cases[] = {{u"Springfield", u"Missouri"},
                       {u"Springfield, illinois", u"Illinois"},
                       {u"Springfield,  Illinois , US", u"Illinois"},
                       {u"Springfield, new zealand", u"Canterbury"},
                       {u"Springfield, Mars", u"Missouri"}};
    for (const auto &each : cases) {
        const Found found = look(QString::fromUtf16(each.address));
        ASSERT_TRUE(found && found->size() == 3);
        EXPECT_EQ(found->constFirst().administrativeArea, QString::fromUtf16(each.area));
        EXPECT_EQ(QUrlQuery(http.requests.constLast().url).queryItemValue(u"name"_s), u"Springfield"_s);
    }
}

TEST_F(HttpGeocoderTest, WhatIsTypedStaysOneParameter)
{
    EXPECT_FALSE(look(u" A&B=C#d/?é+% , x"_s)) << "nobody answers";
    EXPECT_EQ(
        http.requests.constLast().url.toEncoded(),
        "https://forward.example/v1/search?name=A%26B%3DC%23d%2F%3F%C3%A9%2B%25&count=10&language=en&format=json");
}

TEST_F(HttpGeocoderTest, WhatIsNoAnswerIsAnError)
{
    struct {
        FakeHttp::Answer answer;
        std::optional<QString> error;
    } const cases[] = {
        {HttpResponse{200, {}, R"({"generationtime_ms":0.4})", {}}, {}},
        {HttpResponse{404, {}, springfields, {}}, u"HTTP 404"_s},
        {HttpResponse{200, {}, "<html></html>", {}}, u"the answer is none of a geocoder"_s},
        {HttpError{HttpError::Kind::TooLarge, u"too large"_s}, u"too large"_s},
    };
    for (const auto &each : cases) {
        http.answers(u"*"_s, each.answer);
        const Found found = look(u"Springfield"_s);
        EXPECT_EQ(found ? std::nullopt : std::optional(found.error()), each.error);
        EXPECT_TRUE(!found || found->isEmpty());
    }
}

TEST_F(HttpGeocoderTest, HostileAnswersGiveNoPlaceThatIsNone)
{
    const auto files = forEachHostileFile(u"geocoding"_s, [](const QString &name, const QByteArray &bytes) {
        const auto found = decodeGeocoding(bytes, u"Springfield, Illinois"_s);
        EXPECT_EQ(found.has_value(), name.startsWith(u"ok-"_s)) << name.toStdString();
        for (const Placemark &each : found.value_or(QList<Placemark>()))
            EXPECT_TRUE(each.location && isValid(*each.location)) << name.toStdString();
    });
    EXPECT_GE(files, 15);
}

TEST_F(HttpGeocoderTest, APlaceIsToldRoughlyAndNamedByTheLargestSettlement)
{
    struct {
        const char *body;
        std::optional<std::pair<QString, QString>> named; ///< absent: no place
        bool isError = false;
    } const cases[] = {
        {R"({"address":{"city":"Lyon","town":"x","state":"Auvergne-Rhône-Alpes"}})",
         {{u"Lyon"_s, u"Auvergne-Rhône-Alpes"_s}}},
        {R"({"address":{"city":"","village":"Vernon","county":"Eure"}})", {{u"Vernon"_s, u"Eure"_s}}},
        {R"({"address":{"city":["Lyon"]}})", {{QString(), QString()}}},
        {R"({"error":"Unable to geocode"})", {}},
        {R"({"address":"Lyon"})", {}, true},
        {"{", {}, true},
    };
    for (const auto &each : cases) {
        http.answers(u"*"_s, 200, each.body);
        std::optional<Found> found;
        const auto call = geocoder.reverse({48.8566123, -2.3}, [&found](const Found &answer) { found = answer; });
        http.deliver();
        clock.advance(1s);
        ASSERT_TRUE(found);
        EXPECT_EQ(!*found, each.isError) << each.body;
        ASSERT_EQ(*found && !(*found)->isEmpty(), each.named.has_value()) << each.body;
        const Placemark named = each.named ? (*found)->first() : Placemark();
        EXPECT_EQ(std::pair(named.locality, named.administrativeArea),
                  each.named.value_or(std::pair(QString(), QString())));
    }
    EXPECT_EQ(http.requests.constLast().url.toEncoded(),
              "https://reverse.example/reverse?format=jsonv2&zoom=10&lat=48.857&lon=-2.300&accept-language=en");
}

TEST_F(HttpGeocoderTest, OneRequestASecondAndNoneThatNobodyWaitsFor)
{
    int answered = 0;
    const auto count = [&answered](const Found &) { ++answered; };
    auto first = geocoder.geocode(u"a"_s, count);
    auto second = geocoder.geocode(u"b"_s, count);
    auto third = geocoder.geocode(u"c"_s, count);
    EXPECT_EQ(http.requests.size(), 1);
    second.reset();
    clock.advance(999ms);
    EXPECT_EQ(http.requests.size(), 1);
    clock.advance(1ms);
    ASSERT_EQ(http.requests.size(), 2);
    EXPECT_TRUE(http.requests.constLast().url.query().startsWith(u"name=c&"_s));
    first.reset();
    http.deliverAll();
    EXPECT_EQ(std::pair(answered, http.cancelled), std::pair(1, 1));
    clock.advance(2s);
    EXPECT_EQ(clock.pending(), 0U);
}

} // namespace
} // namespace orvelle::test
