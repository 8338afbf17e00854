#include "platform/freedesktop/RemoteAddress.h"

#include <QHash>
#include <QUrl>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace orvelle {

namespace {

/// An address in parts, each as the bytes they mean.
struct Address {
    QByteArray scheme;
    QByteArray user;
    QByteArray host; ///< an IPv6 address with or without its brackets
    QByteArray port;
    QByteArray path; ///< with or without slashes around it
};

/// The characters RFC 3986 allows in a path besides letters, digits and "-._~".
constexpr const char *pathCharacters = "/!$&'()*+,;=:@";

bool hasControlCharacter(const QByteArray &bytes)
{
    return std::any_of(bytes.begin(), bytes.end(), [](char c) { return (c >= 0 && c < 0x20) || c == 0x7f; });
}

/// A host as it stands in an address; empty when it is none.
QByteArray encodedHost(QByteArray host)
{
    if (host.startsWith('[') && host.endsWith(']'))
        host = host.mid(1, host.size() - 2);
    if (!host.contains(':'))
        return host.toPercentEncoding("!$&'()*+,;=");
    // An IPv6 address; the "%" before its zone is written "%25" (RFC 6874).
    for (const char c : host) {
        if (!std::isxdigit(static_cast<unsigned char>(c)) && !std::strchr(":.%", c) &&
            !(host.contains('%') && std::isalnum(static_cast<unsigned char>(c))))
            return {};
    }
    return '[' + host.replace('%', "%25") + ']';
}

std::optional<QString> encoded(Address address)
{
    const QByteArray host = encodedHost(address.host);
    bool portIsNumber = true;
    if (!address.port.isEmpty())
        address.port.toUShort(&portIsNumber);
    for (const QByteArray *part : {&address.user, &address.host, &address.path}) {
        if (hasControlCharacter(*part))
            return std::nullopt;
    }
    if (host.isEmpty() || !portIsNumber)
        return std::nullopt;
    while (address.path.endsWith('/'))
        address.path.chop(1);
    while (address.path.startsWith('/'))
        address.path.remove(0, 1);

    QByteArray text = address.scheme + "://";
    if (!address.user.isEmpty())
        text += address.user.toPercentEncoding("!$&'()*+,;=") + '@';
    text += host;
    if (!address.port.isEmpty())
        text += ':' + address.port;
    if (!address.path.isEmpty())
        text += '/' + address.path.toPercentEncoding(pathCharacters);
    return QString::fromLatin1(text);
}

/// "//server/share/folder"
std::optional<QString> addressOfShare(const QByteArray &source)
{
    if (!source.startsWith("//"))
        return std::nullopt;
    const qsizetype slash = source.indexOf('/', 2);
    if (slash < 0)
        return encoded({"smb", {}, source.mid(2), {}, {}});
    return encoded({"smb", {}, source.mid(2, slash - 2), {}, source.mid(slash)});
}

/// "[user@]host:path", where the host may be an IPv6 address in brackets.
std::optional<Address> hostAndPath(const QByteArray &source)
{
    Address address;
    const qsizetype at = source.indexOf('@');
    const qsizetype hostStart = at >= 0 && at < source.indexOf(':') ? at + 1 : 0;
    if (hostStart > 0)
        address.user = source.left(at);
    const bool bracketed = source.mid(hostStart).startsWith('[');
    const qsizetype hostEnd = bracketed ? source.indexOf("]:", hostStart) + 1 : source.indexOf(':', hostStart);
    if (hostEnd <= hostStart)
        return std::nullopt;
    address.host = source.mid(hostStart, hostEnd - hostStart);
    address.path = source.mid(hostEnd + 1);
    return address;
}

std::optional<QString> addressOfExport(const QByteArray &source)
{
    auto address = hostAndPath(source);
    if (!address || !address->user.isEmpty() || !address->path.startsWith('/'))
        return std::nullopt;
    address->scheme = "nfs";
    return encoded(*address);
}

/// A path without a leading slash is below the user's home on the server, for
/// which an address has no form.
std::optional<QString> addressOfSecureShell(const QByteArray &source)
{
    auto address = hostAndPath(source);
    if (!address || !address->path.startsWith('/'))
        return std::nullopt;
    address->scheme = "sftp";
    return encoded(*address);
}

std::optional<QString> addressOfWebFolder(const QByteArray &source)
{
    const QUrl url = QUrl::fromEncoded(source, QUrl::TolerantMode);
    const QString scheme = url.scheme();
    if (!url.isValid() || url.host().isEmpty() || (scheme != QLatin1String("http") && scheme != QLatin1String("https")))
        return std::nullopt;
    // Never a password: the address is stored and shown.
    QByteArray address = url.toEncoded(QUrl::RemovePassword);
    while (address.endsWith('/'))
        address.chop(1);
    return QString::fromLatin1(address);
}

struct SourceForm {
    const char *type;
    std::optional<QString> (*read)(const QByteArray &source);
};

constexpr SourceForm sourceForms[] = {
    {"cifs", addressOfShare},      {"smb3", addressOfShare},           {"nfs", addressOfExport},
    {"nfs4", addressOfExport},     {"fuse", addressOfWebFolder},       {"fuse.sshfs", addressOfSecureShell},
    {"davfs", addressOfWebFolder}, {"fuse.davfs", addressOfWebFolder},
};

using Keys = QHash<QByteArray, QByteArray>;

/// "key=value,key=value" with percent-encoded values.
Keys keysOf(const QByteArray &specification)
{
    Keys keys;
    for (const QByteArray &pair : specification.split(',')) {
        const qsizetype equals = pair.indexOf('=');
        if (equals > 0)
            keys.insert(pair.left(equals), QByteArray::fromPercentEncoding(pair.mid(equals + 1)));
    }
    return keys;
}

Address plainVolume(const char *scheme, const Keys &keys)
{
    return {scheme, keys.value("user"), keys.value("host"), keys.value("port"), keys.value("prefix")};
}

Address smbVolume(const Keys &keys)
{
    QByteArray user = keys.value("user");
    if (!user.isEmpty() && keys.contains("domain"))
        user = keys.value("domain") + ';' + user;
    return {"smb", user, keys.value("server"), keys.value("port"), keys.value("share")};
}

Address davVolume(const Keys &keys)
{
    return plainVolume(keys.value("ssl") == "true" ? "davs" : "dav", keys);
}

Address afpVolume(const Keys &keys)
{
    return {"afp", keys.value("user"), keys.value("host"), {}, keys.value("volume")};
}

struct VolumeForm {
    const char *type;
    Address (*read)(const Keys &keys);
};

constexpr VolumeForm volumeForms[] = {
    {"smb-share", smbVolume},
    {"smb-server", smbVolume},
    {"afp-volume", afpVolume},
    {"dav", davVolume},
    {"sftp", [](const Keys &keys) { return plainVolume("sftp", keys); }},
    {"ftp", [](const Keys &keys) { return plainVolume("ftp", keys); }},
    {"ftps", [](const Keys &keys) { return plainVolume("ftps", keys); }},
    {"nfs", [](const Keys &keys) { return plainVolume("nfs", keys); }},
};

} // namespace

std::optional<QString> addressOfSource(const QByteArray &type, const QByteArray &source)
{
    for (const SourceForm &form : sourceForms) {
        if (type == form.type)
            return form.read(source);
    }
    return std::nullopt;
}

bool isVolumesFolder(const QByteArray &type)
{
    return type == "fuse.gvfsd-fuse";
}

std::optional<QString> addressOfVolumeFolder(const QByteArray &name)
{
    const qsizetype colon = name.indexOf(':');
    for (const VolumeForm &form : volumeForms) {
        if (colon > 0 && name.left(colon) == form.type)
            return encoded(form.read(keysOf(name.mid(colon + 1))));
    }
    return std::nullopt;
}

} // namespace orvelle
