#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace orvelle {

/// The address as a link of a note may have it: "https://" is put before a
/// host without a scheme and "mailto:" before a mail address. Absent for what
/// is no address, and for schemes that open programs or files of this machine.
std::optional<QUrl> safeLink(const QString &typed);

/// The same for a word in running text, which has to say by its beginning
/// ("https://", "www.") that it is one.
std::optional<QUrl> linkInText(const QString &word);

} // namespace orvelle
