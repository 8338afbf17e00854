#pragma once

#include <QString>

class QMimeData;

namespace orvelle {

class Volumes;

/// The link in what was dropped or copied: the path of the first file, else
/// the first address, else the text. Empty when there is none of these.
QString linkIn(const QMimeData &data);

/// The same, for showing it unasked: only an address or an existing file, and
/// nothing that a password manager has put there. Empty otherwise.
QString linkToOffer(const QMimeData &data, const Volumes &volumes);

} // namespace orvelle
