#pragma once

#include <QString>

namespace orvelle {

/// A tool tip that shows `text` as it stands, with its line breaks, also when
/// it looks like markup; a long one wraps and ends in dots. It is left without
/// markup where it can be: screen readers read the tool tip of a widget that
/// has no description.
QString plainToolTip(const QString &text);

} // namespace orvelle
