#pragma once

#include <QString>

namespace orvelle {

/// "0.1.0"
QString versionText();
/// The build number, "1".
QString buildText();

} // namespace orvelle
