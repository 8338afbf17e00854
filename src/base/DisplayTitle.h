#pragma once

#include <QString>

namespace orvelle {

/// The text, and of one of more than `longest` characters only its two ends,
/// with an ellipsis between them. Not for texts that are kept. Any thread.
QString shortened(const QString &text, qsizetype longest);

/// A name as one line: without control characters, and of a very long one only
/// the ends, which are all that can be seen of it. Any thread.
QString displayTitle(const QString &title, qsizetype longest = 320);

} // namespace orvelle
