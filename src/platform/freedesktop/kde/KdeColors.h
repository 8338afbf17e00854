#pragma once

#include <QColor>
#include <QPalette>
#include <QStringList>

#include <optional>

namespace orvelle {

/// The colours of KDE's windows, from its settings ("kdeglobals" in one of
/// `configFolders`, the user's own first) or, where they name no colours, from
/// the colour scheme that they name, in "color-schemes" of `dataFolders`. The
/// toolkit's own reading of them knows no scheme files, and misses the change
/// back to the standard scheme. Absent where there is no such scheme.
std::optional<QPalette> kdePalette(const QStringList &configFolders, const QStringList &dataFolders);

/// What KDE's panels are drawn on, where their theme has colours of its own
/// ("plasmarc" names it, "plasma/desktoptheme" has them): dark panels beside
/// light windows. Absent where they follow the windows' colours.
std::optional<QColor> kdePanelColor(const QStringList &configFolders, const QStringList &dataFolders);

} // namespace orvelle
