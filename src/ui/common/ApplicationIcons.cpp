#include "ui/common/ApplicationIcons.h"

#include "ui/common/Icons.h"

#include <QDir>
#include <QFile>

namespace orvelle {

using namespace Qt::StringLiterals;

QIcon applicationIcon(const QString &icon, const QColor &color)
{
    QIcon found;
    if (QDir::isAbsolutePath(icon)) {
        if (QFile::exists(icon))
            found = QIcon(icon);
    } else if (!icon.isEmpty()) {
        found = QIcon::fromTheme(icon);
    }
    if (found.availableSizes().isEmpty() && found.pixmap(16).isNull())
        found = QIcon::fromTheme(u"application-x-executable"_s);
    return found.pixmap(16).isNull() ? symbolIcon(u"puzzlepiece.fill"_s, color) : found;
}

} // namespace orvelle
