#include "platform/freedesktop/GioLaunch.h"

#include "platform/freedesktop/GLibPointers.h"
#include "platform/freedesktop/x11/StartupNotice.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace orvelle::gio {

using namespace Qt::StringLiterals;

namespace {

/// Schemes of shares that file managers open, though few register for them.
constexpr std::array shareSchemes{"smb", "sftp", "ftp", "ftps", "nfs", "afp", "dav", "davs"};

/// Runs a GIO call whose last argument is a place for the error.
template<typename Call>
QString failureOf(Call call)
{
    GError *raw = nullptr;
    const bool done = call(&raw);
    const GErrorPtr error(raw);
    if (done)
        return {};
    return error ? QString::fromUtf8(error->message) : u"no reason was given"_s;
}

QString openInFileManager(const char *uri, const StartupNotice &notice)
{
    const ObjectPtr<GAppInfo> manager(g_app_info_get_default_for_type("inode/directory", TRUE));
    if (!manager)
        return u"no file manager is installed"_s;
    return failureOf([&](GError **error) {
        GList only{const_cast<char *>(uri), nullptr, nullptr};
        return g_app_info_launch_uris(manager.get(), &only, notice.context(), error);
    });
}

QByteArray uriOf(const QString &path)
{
    const ObjectPtr<GFile> file(g_file_new_for_path(QFile::encodeName(path).constData()));
    const GText uri(g_file_get_uri(file.get()));
    return uri.get();
}

QString openDefault(const QByteArray &uri, const StartupNotice &notice)
{
    return failureOf(
        [&](GError **error) { return g_app_info_launch_default_for_uri(uri.constData(), notice.context(), error); });
}

} // namespace

QString openAddress(const QByteArray &encodedUrl, const StartupNotice &notice)
{
    const QByteArray scheme = encodedUrl.left(encodedUrl.indexOf(':')).toLower();
    if (std::ranges::any_of(shareSchemes, [&scheme](const char *share) { return scheme == share; })) {
        const ObjectPtr<GAppInfo> handler(g_app_info_get_default_for_uri_scheme(scheme.constData()));
        if (!handler)
            return openInFileManager(encodedUrl.constData(), notice);
    }
    return openDefault(encodedUrl, notice);
}

QString openFile(const QString &absolutePath, const StartupNotice &notice)
{
    if (!QFileInfo::exists(absolutePath))
        return u"the file does not exist"_s;
    return openDefault(uriOf(absolutePath), notice);
}

QString openFolder(const QString &absolutePath, const StartupNotice &notice)
{
    if (!QFileInfo(absolutePath).isDir())
        return u"the folder does not exist"_s;
    return openInFileManager(uriOf(absolutePath).constData(), notice);
}

} // namespace orvelle::gio
