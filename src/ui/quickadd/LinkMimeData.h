#pragma once

#include <QString>

#include <functional>

class QMimeData;
class QObject;

namespace orvelle {

class Pasteboard;
class Volumes;

/// The link in what was dropped or copied: the path of the first file, else
/// the first address, else the text. Empty when there is none of these.
QString linkIn(const QMimeData &data);

/// The same, for showing it unasked: only an address or an existing file, and
/// nothing that a password manager has put there. Empty otherwise.
QString linkToOffer(const QMimeData &data, const Volumes &volumes);

enum class Reading {
    Unasked, ///< what a password manager has put there stays unread
    ByUser,
};

/// Gives what the two above look at of what is copied now: nothing when its
/// owner does not answer or has too much for an address. At once or from the
/// event loop; never once `context` is gone.
void readCopied(Pasteboard &pasteboard, Reading reading, QObject *context, std::function<void(const QMimeData &)> then);

} // namespace orvelle
