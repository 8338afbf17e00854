#include "platform/freedesktop/http/HttpGeocoder.h"

#include "platform/Clock.h"
#include "platform/HttpClient.h"

#include <QLocale>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds pauseBetween{1};
constexpr std::chrono::seconds idleTime{8};
constexpr std::chrono::seconds wholeTime{12};
constexpr int placeDecimals = 3;

QString encoded(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

/// "en" of "en_GB"; the C locale has no language.
QString language()
{
    const QLocale locale;
    return locale.language() == QLocale::C ? u"en"_s : locale.name().section(u'_', 0, 0);
}

} // namespace

/// A look-up that waits for its turn or for its answer.
class HttpGeocoder::Call : public GeocoderCall
{
public:
    Call(HttpGeocoder &owner, QUrl url, Decode decode, Done done)
        : m_owner(&owner), m_url(std::move(url)), m_decode(std::move(decode)), m_done(std::move(done))
    {
    }
    ~Call() override
    {
        if (m_owner)
            std::erase(m_owner->m_waiting, this);
    }

    void forgetOwner() { m_owner = nullptr; }

    void send(HttpClient &http)
    {
        m_owner = nullptr;
        HttpRequest request;
        request.url = m_url;
        request.idleTimeout = idleTime;
        request.totalTimeout = wholeTime;
        m_request = http.send(request, [this](const Result<HttpResponse, HttpError> &answer) {
            // Calling may destroy this.
            const Done done = std::move(m_done);
            done(read(answer));
        });
    }

private:
    Result<QList<Placemark>, QString> read(const Result<HttpResponse, HttpError> &answer) const
    {
        if (!answer)
            return answer.error().detail;
        if (answer->status < 200 || answer->status > 299)
            return u"HTTP %1"_s.arg(answer->status);
        const auto places = m_decode(answer->body);
        return places ? Result<QList<Placemark>, QString>(*places) : u"the answer is none of a geocoder"_s;
    }

    HttpGeocoder *m_owner; ///< while waiting for its turn
    QUrl m_url;
    Decode m_decode;
    Done m_done;
    std::unique_ptr<HttpCall> m_request;
};

HttpGeocoder::HttpGeocoder(const Services &services) : m_services(services) {}

HttpGeocoder::~HttpGeocoder()
{
    for (Call *each : m_waiting)
        each->forgetOwner();
}

std::unique_ptr<GeocoderCall> HttpGeocoder::geocode(const QString &address, Done done)
{
    // The service knows places by their own names only.
    const QString name = address.section(u',', 0, 0).trimmed();
    QUrl url = m_services.forward();
    url.setPath(u"/v1/search"_s);
    url.setQuery(u"name="_s + encoded(name) + u"&count=10&language="_s + language() + u"&format=json"_s);
    return enqueue(
        url, [address](const QByteArray &body) { return decodeGeocoding(body, address); }, std::move(done));
}

std::unique_ptr<GeocoderCall> HttpGeocoder::reverse(const Coordinates &place, Done done)
{
    QUrl url = m_services.reverse();
    url.setPath(u"/reverse"_s);
    url.setQuery(u"format=jsonv2&zoom=10&lat=%1&lon=%2&accept-language=%3"_s.arg(
        QString::number(place.latitude, 'f', placeDecimals), QString::number(place.longitude, 'f', placeDecimals),
        language()));
    return enqueue(url, &decodeReverse, std::move(done));
}

std::unique_ptr<GeocoderCall> HttpGeocoder::enqueue(const QUrl &url, Decode decode, Done done)
{
    auto call = std::make_unique<Call>(*this, url, std::move(decode), std::move(done));
    m_waiting.push_back(call.get());
    if (!m_pause)
        sendNext();
    return call;
}

void HttpGeocoder::sendNext()
{
    m_pause.reset();
    if (m_waiting.empty())
        return;
    Call *next = m_waiting.front();
    m_waiting.pop_front();
    m_pause = m_services.clock.singleShot(pauseBetween, [this] { sendNext(); });
    next->send(m_services.http);
}

} // namespace orvelle
