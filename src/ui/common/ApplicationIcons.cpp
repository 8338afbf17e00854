#include "ui/common/ApplicationIcons.h"

#include "ui/common/Icons.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

/// Desktop entries of old name the file, where the name in the theme is meant.
constexpr std::array suffixes{".png"_L1, ".svg"_L1, ".xpm"_L1, ".svgz"_L1};

QString withoutSuffix(const QString &icon)
{
    for (const QLatin1StringView suffix : suffixes) {
        if (icon.endsWith(suffix, Qt::CaseInsensitive))
            return icon.chopped(suffix.size());
    }
    return icon;
}

bool isPicture(const QIcon &icon)
{
    return !icon.pixmap(16).isNull();
}

/// The file, when it is a picture of whatever kind.
QIcon fromFile(const QString &path)
{
    const QIcon icon = QFileInfo(path).isFile() ? QIcon(path) : QIcon();
    return isPicture(icon) ? icon : QIcon();
}

/// What lies beside the themes: icons of programs that come with one file only.
QIcon fromUnthemed(const QString &name)
{
    QStringList folders{QDir::homePath() + u"/.icons"_s};
    for (const QString &data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        folders += {data + u"/icons"_s, data + u"/pixmaps"_s};
    for (const QString &folder : folders) {
        for (const QLatin1StringView suffix : suffixes) {
            const QIcon icon = fromFile(folder + u'/' + name + suffix);
            if (!icon.isNull())
                return icon;
        }
    }
    return {};
}

QIcon named(const QString &icon)
{
    if (QDir::isAbsolutePath(icon))
        return fromFile(icon);
    const QString name = withoutSuffix(icon);
    if (name.isEmpty() || name.contains(u'/')) // a name is no way out of the folders of icons
        return {};
    const QIcon themed = QIcon::fromTheme(name);
    return isPicture(themed) ? themed : fromUnthemed(name);
}

} // namespace

QIcon applicationIcon(const QString &icon, const QColor &color)
{
    QIcon found = named(icon);
    if (found.isNull())
        found = QIcon::fromTheme(u"application-x-executable"_s);
    return isPicture(found) ? found : symbolIcon(u"puzzlepiece.fill"_s, color);
}

} // namespace orvelle
