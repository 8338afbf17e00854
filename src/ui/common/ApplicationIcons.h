#pragma once

#include <QIcon>
#include <QString>

namespace orvelle {

/// An application's icon by its name in the icon theme or its absolute path;
/// the theme's icon for programs where there is none. Main thread.
QIcon applicationIcon(const QString &icon);

} // namespace orvelle
