#include "links/favicons/FaviconHosts.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr std::array siteSchemes = {"http"_L1, "https"_L1, "ftp"_L1, "ftps"_L1};

/// Names that no public server answers to: RFC 6761, 6762, 7686, 8375 and
/// 9476, the one ICANN set aside for private use, and those that routers and
/// companies use without having been given them.
constexpr std::array privateSuffixes = {".local"_L1, ".localhost"_L1, ".localdomain"_L1, ".internal"_L1, ".intranet"_L1,
                                        ".lan"_L1,   ".home.arpa"_L1, ".home"_L1,        ".corp"_L1,     ".private"_L1,
                                        ".onion"_L1, ".i2p"_L1,       ".alt"_L1,         ".test"_L1,     ".invalid"_L1};

struct Range {
    quint32 network;
    int bits;
};

/// IANA IPv4 Special-Purpose Address Registry: what is not routed publicly.
constexpr std::array<Range, 12> privateRanges = {{
    {0x00000000, 8},  // this network
    {0x0A000000, 8},  // 10/8
    {0x64400000, 10}, // 100.64/10, shared by a provider's customers
    {0x7F000000, 8},  // loopback
    {0xA9FE0000, 16}, // link-local
    {0xAC100000, 12}, // 172.16/12
    {0xC0000000, 24}, // 192.0.0/24
    {0xC0A80000, 16}, // 192.168/16
    {0xC6120000, 15}, // 198.18/15
    {0xCB007100, 24}, // documentation
    {0xE0000000, 4},  // multicast
    {0xF0000000, 4},  // reserved, broadcast
}};

bool isIn(quint32 address, const Range &range)
{
    return (address >> (32 - range.bits)) == (range.network >> (32 - range.bits));
}

/// The address of a dotted quad in plain decimal; absent for anything else.
std::optional<quint32> dottedQuad(const QString &host)
{
    const QStringList parts = host.split(u'.');
    if (parts.size() != 4)
        return std::nullopt;
    quint32 address = 0;
    for (const QString &part : parts) {
        bool ok = false;
        const uint value = part.toUInt(&ok);
        if (!ok || value > 255 || QString::number(value) != part)
            return std::nullopt;
        address = address << 8 | value;
    }
    return address;
}

/// Whether a resolver would take the last label, and with it the whole name,
/// for a number: "10", "0x7f", "017".
bool endsInNumber(const QString &host)
{
    const QString last = host.section(u'.', -1);
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    return last.startsWith("0x"_L1) || std::all_of(last.begin(), last.end(), isDigit);
}

bool isPrivateName(const QString &host)
{
    const auto endsHost = [&host](QLatin1StringView suffix) { return host.endsWith(suffix); };
    return !host.contains(u'.') || host.startsWith(u'.') || host.contains(".."_L1) ||
           std::any_of(privateSuffixes.begin(), privateSuffixes.end(), endsHost);
}

bool isPrivateHost(const QString &host)
{
    // An IPv6 address: few public sites are linked by one, and many forms of
    // it hold a private IPv4 address.
    if (host.contains(u':'))
        return true;
    if (endsInNumber(host)) {
        const auto address = dottedQuad(host);
        return !address || std::any_of(privateRanges.begin(), privateRanges.end(),
                                       [&address](const Range &range) { return isIn(*address, range); });
    }
    return isPrivateName(host);
}

} // namespace

QString faviconHost(const QString &address)
{
    const QUrl url(address.trimmed(), QUrl::TolerantMode);
    const bool isSite = std::find(siteSchemes.begin(), siteSchemes.end(), url.scheme()) != siteSchemes.end();
    if (!url.isValid() || !isSite || url.authority().contains(u'@'))
        return {};
    QString host = url.host(QUrl::FullyEncoded).toLower();
    if (host.endsWith(u'.'))
        host.chop(1);
    return host.isEmpty() || isPrivateHost(host) ? QString() : host;
}

bool isLoopbackHost(const QString &hostAndPort)
{
    const QString host = QUrl(u"https://"_s + hostAndPort).host().toLower();
    if (host == "localhost"_L1 || host.endsWith(".localhost"_L1) || host == "::1"_L1)
        return true;
    const auto address = dottedQuad(host);
    return address && (*address >> 24) == 127;
}

QUrl faviconRequestUrl(const QString &serviceHost, const QString &host)
{
    QUrl url;
    url.setScheme(isLoopbackHost(serviceHost) ? u"http"_s : u"https"_s);
    url.setAuthority(serviceHost, QUrl::StrictMode);
    url.setPath(u"/s2/favicons"_s);
    url.setQuery(u"domain="_s + QString::fromLatin1(QUrl::toPercentEncoding(host)) + u"&sz=64"_s);
    return url;
}

} // namespace orvelle
