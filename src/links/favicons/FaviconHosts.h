#pragma once

#include <QString>
#include <QUrl>

namespace orvelle {

/// The host of a web address whose name may be told to an icon service, in
/// lower case and ASCII ("xn--bcher-kva.example"). Empty for everything else:
/// addresses with credentials, and hosts that only mean something on this
/// machine or its network (loopback, private and link-local ranges in any
/// notation, names of one label, names under ".local" and the like).
///
/// Only http, https, ftp and ftps addresses belong to a site.
QString faviconHost(const QString &address);

/// Whether a host name, with or without a port, means this machine.
bool isLoopbackHost(const QString &hostAndPort);

/// What is asked for the picture of `host` (as faviconHost() gives it).
QUrl faviconRequestUrl(const QString &serviceHost, const QString &host);

} // namespace orvelle
