#include "ui/settings/AboutLicences.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <array>

// Outside any namespace, as the macro declares a global function.
static void registerLicences()
{
    Q_INIT_RESOURCE(symbols);
}

namespace orvelle {

namespace {

struct Component {
    const char *name;
    const char *licence;
    const char *package; ///< pattern of the package's folder, or a compiled-in file
};

/// Package names carry the number of the library's interface, which differs
/// between distributions.
const std::array<Component, 22> components{{
    {"Orvelle", "Apache-2.0", ":/licences/orvelle"},
    {"Phosphor Icons", "MIT", ":/licences/icons"},
    {"Qt 6", "LGPL-3.0", "libqt6core6*"},
    {"simdjson", "Apache-2.0", "libsimdjson[0-9]*"},
    {"RapidJSON", "MIT", "rapidjson-dev"},
    {"SQLite", "Public Domain", "libsqlite3-0"},
    {"Zstandard", "BSD-3-Clause", "libzstd1"},
    {"Nettle", "LGPL-3.0+", "libnettle[0-9]*"},
    {"GLib", "LGPL-2.1+", "libglib2.0-0*"},
    {"Gumbo", "Apache-2.0", "libgumbo[0-9]*"},
    {"libical", "MPL-2.0 or LGPL-2.1", "libical[0-9]*"},
    {"Evolution Data Server", "LGPL-2.0", "libecal-2.0-[0-9]*"},
    {"libsecret", "LGPL-2.1+", "libsecret-1-0"},
    {"libsodium", "ISC", "libsodium[0-9]*"},
    {"libplist", "LGPL-2.1+", "libplist[0-9]*"},
    {"libnl", "LGPL-2.1", "libnl-3-200*"},
    {"libcanberra", "LGPL-2.1+", "libcanberra0*"},
    {"XCB", "MIT", "libxcb1"},
    {"Wayland", "MIT", "libwayland-client0"},
    {"xkbcommon", "MIT", "libxkbcommon0"},
    {"startup-notification", "LGPL-2.0+", "libstartup-notification0"},
    {"systemd", "LGPL-2.1+", "libsystemd0*"},
}};

QString copyrightOf(const QString &package, const QStringList &folders)
{
    if (package.startsWith(u':'))
        return QFile::exists(package) ? package : QString();
    for (const QString &folder : folders) {
        for (const QString &found : QDir(folder).entryList({package}, QDir::Dirs, QDir::Name)) {
            const QString file = folder + u'/' + found + QStringLiteral("/copyright");
            if (QFile::exists(file))
                return file;
        }
    }
    return {};
}

} // namespace

QList<AboutLicence> aboutLicences(const QStringList &documentFolders)
{
    registerLicences();
    QList<AboutLicence> result;
    for (const Component &component : components) {
        result += AboutLicence{QString::fromLatin1(component.name), QString::fromLatin1(component.licence),
                               copyrightOf(QString::fromLatin1(component.package), documentFolders)};
    }
    return result;
}

QStringList systemDocumentFolders()
{
    return QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("doc"),
                                     QStandardPaths::LocateDirectory);
}

std::optional<QString> licenceText(const AboutLicence &licence)
{
    QFile file(licence.textFile);
    if (!file.open(QFile::ReadOnly))
        return std::nullopt;
    return QString::fromUtf8(file.read(1 << 20));
}

} // namespace orvelle
