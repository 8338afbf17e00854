#pragma once

#include <QString>

namespace orvelle {

/// "0.1.0"
QString versionText();
/// The build number, "1".
QString buildText();
/// The host that the maker of this build set up to tell of newer versions;
/// empty for none.
QString updateHost();
/// The page on which this build's maker takes tips; empty for none.
QString tipPage();

} // namespace orvelle
