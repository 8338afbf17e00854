#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace orvelle {

/// An application's icon by its name in the icon theme or its absolute path;
/// the theme's icon for programs where there is none, or a symbol in `color`
/// (the text's by default). Main thread.
QIcon applicationIcon(const QString &icon, const QColor &color = {});

} // namespace orvelle
