#pragma once

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

} // namespace orvelle
