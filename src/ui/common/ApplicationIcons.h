#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace orvelle {

/// An application's icon as its desktop entry names it: an absolute path, or a
/// name that is looked up in the icon theme, its parents and hicolor, then
/// among the icons of no theme (Icon Theme Specification 0.13, with "pixmaps"
/// in every data folder). The theme's icon for programs where there is none,
/// or a symbol in `color` (the text's by default). Main thread.
QIcon applicationIcon(const QString &icon, const QColor &color = {});

} // namespace orvelle
