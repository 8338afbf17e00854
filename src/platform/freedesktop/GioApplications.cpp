#include "platform/freedesktop/GioApplications.h"

#include "platform/freedesktop/GLibPointers.h"
#include "platform/freedesktop/x11/StartupNotice.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <gio/gdesktopappinfo.h>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcApplications, "Applications", QtInfoMsg)

constexpr int mostLaunchers = 4;

using AppInfo = ObjectPtr<GDesktopAppInfo>;

QString textOf(const char *text)
{
    return QString::fromUtf8(text);
}

QString iconOf(GDesktopAppInfo *info)
{
    GIcon *icon = g_app_info_get_icon(G_APP_INFO(info));
    if (!icon)
        return {};
    const GText name(g_icon_to_string(icon));
    if (G_IS_THEMED_ICON(icon)) {
        const char *const *names = g_themed_icon_get_names(G_THEMED_ICON(icon));
        return names && names[0] ? textOf(names[0]) : QString();
    }
    return textOf(name.get());
}

DesktopApplication described(GDesktopAppInfo *info)
{
    GAppInfo *app = G_APP_INFO(info);
    DesktopApplication result;
    const char *path = g_desktop_app_info_get_filename(info);
    result.path = path ? QFile::decodeName(path) : QString();
    const char *id = g_app_info_get_id(app);
    result.id = id ? textOf(id) : QFileInfo(result.path).fileName();
    result.name = textOf(g_app_info_get_display_name(app));
    result.description = textOf(g_app_info_get_description(app));
    const char *const *keywords = g_desktop_app_info_get_keywords(info);
    for (; keywords && *keywords; ++keywords)
        result.keywords += textOf(*keywords);
    result.icon = iconOf(info);
    return result;
}

/// Files in the folders of applications were put there to be started; for all
/// others that has to be said, as file managers want it too. A document that
/// brings a path with it must not be able to run what was only downloaded.
bool isTrusted(const QString &path)
{
    const QFileInfo file(path);
    if (!QDir::isAbsolutePath(path) || !path.endsWith(u".desktop") || !file.isFile())
        return false;
    const QString clean = QDir::cleanPath(path);
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    const auto holds = [&clean](const QString &folder) { return clean.startsWith(QDir::cleanPath(folder) + u'/'); };
    return std::ranges::any_of(folders, holds) || file.isExecutable();
}

/// Null as Applications::find() is absent. Any thread.
AppInfo load(const QString &path, const QString &id)
{
    if (isTrusted(path)) {
        AppInfo found(g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData()));
        if (found && !g_desktop_app_info_get_is_hidden(found.get()))
            return found;
    }
    // An id is a name in the folders of applications, and no way out of them.
    if (id.isEmpty() || id.contains(u'/') || QFileInfo::exists(path))
        return nullptr;
    const QString file = id.endsWith(u".desktop") ? id : id + u".desktop"_s;
    return AppInfo(g_desktop_app_info_new(file.toUtf8().constData()));
}

void launchNow(const QString &path, const QString &id, const StartupNotice &notice)
{
    const AppInfo info = load(path, id);
    if (!info) {
        qCWarning(lcApplications, "An application that is to be started is gone");
        return;
    }
    GError *error = nullptr;
    if (!g_app_info_launch(G_APP_INFO(info.get()), nullptr, notice.context(), &error)) {
        qCWarning(lcApplications, "An application could not be started: %d", error ? error->code : 0);
        g_clear_error(&error);
    }
}

} // namespace

GioApplications::GioApplications() : m_launchers(mostLaunchers) {}

QList<DesktopApplication> GioApplications::installed() const
{
    QList<DesktopApplication> result;
    GList *all = g_app_info_get_all();
    for (GList *each = all; each; each = each->next) {
        auto *app = static_cast<GAppInfo *>(each->data);
        if (G_IS_DESKTOP_APP_INFO(app) && g_app_info_should_show(app))
            result += described(G_DESKTOP_APP_INFO(app));
    }
    g_list_free_full(all, &g_object_unref);
    QCollator byName;
    byName.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::sort(result, [&byName](const DesktopApplication &a, const DesktopApplication &b) {
        const int order = byName.compare(a.name, b.name);
        return order != 0 ? order < 0 : a.id < b.id;
    });
    return result;
}

std::optional<DesktopApplication> GioApplications::find(const QString &path, const QString &id) const
{
    const bool isDistant = !m_volumes.distantVolumeHolding(path).isEmpty();
    if (const AppInfo info = load(isDistant ? QString() : path, id))
        return described(info.get());
    if (!isDistant || !path.endsWith(u".desktop"))
        return std::nullopt;
    // Nobody looks at it before it is started.
    const QFileInfo named(path);
    return DesktopApplication{named.fileName(), path, named.completeBaseName(), {}, {}, {}};
}

void GioApplications::launch(const QString &path, const QString &id)
{
    m_launchers.run([path, id, notice = std::make_shared<StartupNotice>()] { launchNow(path, id, *notice); });
}

} // namespace orvelle
