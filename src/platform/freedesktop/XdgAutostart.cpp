#include "platform/freedesktop/XdgAutostart.h"

#include "platform/freedesktop/AutostartEntry.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto entryName = "/org.orvelle.Orvelle.desktop"_L1;
constexpr auto unreadableSuffix = ".unreadable"_L1;

QStringList split(const QString &list)
{
    return list.split(u':', Qt::SkipEmptyParts);
}

LaunchAtLogin::Outcome outcomeOf(const std::optional<QString> &failure)
{
    if (failure)
        return LaunchAtLogin::Error{*failure};
    return LaunchAtLogin::Done();
}

/// Also one that leads nowhere.
bool isThere(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

bool startsFrom(const QString &path, const AutostartPlaces &places)
{
    const auto entry = AutostartEntry::read(path);
    return entry && entry->startsIn(places.currentDesktop);
}

} // namespace

AutostartPlaces AutostartPlaces::ofUser()
{
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    AutostartPlaces places;
    places.userFolder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/autostart"_s;
    for (const QString &folder : split(environment.value(u"XDG_CONFIG_DIRS"_s, u"/etc/xdg"_s)))
        places.systemFolders += folder + u"/autostart"_s;
    places.currentDesktop = split(environment.value(u"XDG_CURRENT_DESKTOP"_s));
    places.program = lastingProgramPath(QCoreApplication::applicationFilePath(), environment);
    return places;
}

QString lastingProgramPath(const QString &executable, const QProcessEnvironment &environment)
{
    const QString image = environment.value(u"APPIMAGE"_s);
    const QString unpacked = environment.value(u"APPDIR"_s);
    // The variables are inherited by whatever an image starts.
    if (!unpacked.isEmpty() && executable.startsWith(unpacked + u'/') && QFileInfo(image).isExecutable())
        return image;
    const QString canonical = QFileInfo(executable).canonicalFilePath();
    for (const QString &folder : split(environment.value(u"PATH"_s))) {
        const QString candidate = folder + u'/' + QFileInfo(executable).fileName();
        if (QFileInfo(candidate).isAbsolute() && QFileInfo(candidate).isExecutable() &&
            QFileInfo(candidate).canonicalFilePath() == canonical)
            return candidate;
    }
    return executable;
}

QString XdgAutostart::userEntry() const
{
    return m_places.userFolder + entryName;
}

QString XdgAutostart::systemEntry() const
{
    for (const QString &folder : m_places.systemFolders) {
        if (isThere(folder + entryName))
            return folder + entryName;
    }
    return {};
}

LaunchAtLogin::Status XdgAutostart::status() const
{
    const QString effective = isThere(userEntry()) ? userEntry() : systemEntry();
    return startsFrom(effective, m_places) ? Status::Enabled : Status::Disabled;
}

LaunchAtLogin::Outcome XdgAutostart::registerApplication()
{
    if (status() == Status::Enabled)
        return Done();
    const QString path = userEntry();
    auto entry = AutostartEntry::read(path);
    if (!entry && QFileInfo::exists(path)) {
        QFile::remove(path + unreadableSuffix);
        if (!QFile::rename(path, path + unreadableSuffix))
            return Error{u"The entry that is there can neither be read nor be put aside"_s};
    }
    AutostartEntry wanted = entry ? std::move(entry).value() : AutostartEntry::fresh(m_places.program);
    wanted.enable(m_places.currentDesktop);
    if (wanted.leadsElsewhere(m_places.program))
        wanted.lead(m_places.program);
    if (const auto failure = wanted.write(path))
        return Error{*failure};
    // Something in an edited entry that only its author can put right.
    if (status() != Status::Enabled)
        return Error{u"The desktop would still not start what the entry says"_s};
    return Done();
}

LaunchAtLogin::Outcome XdgAutostart::unregisterApplication()
{
    if (status() == Status::Disabled)
        return Done();
    const QString path = userEntry();
    const QString system = systemEntry();
    auto entry = AutostartEntry::read(isThere(path) ? path : system);
    if (!entry)
        return Error{entry.error()};
    const bool isLink = QFileInfo(path).isSymLink();
    if (system.isEmpty() && !isLink && entry->isUnedited()) {
        if (QFile::remove(path))
            return Done();
        return Error{u"The entry cannot be removed"_s};
    }
    AutostartEntry hidden = std::move(entry).value();
    hidden.hide();
    return outcomeOf(hidden.write(path));
}

LaunchAtLogin::Outcome XdgAutostart::followProgram()
{
    const QString path = userEntry();
    if (!isThere(path) || !QFileInfo(m_places.program).isExecutable())
        return Done();
    auto entry = AutostartEntry::read(path);
    // Read as off, and left to whoever wrote it.
    if (!entry || !entry->leadsElsewhere(m_places.program))
        return Done();
    AutostartEntry moved = std::move(entry).value();
    moved.lead(m_places.program);
    return outcomeOf(moved.write(path));
}

} // namespace orvelle
