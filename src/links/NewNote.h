#pragma once

#include "links/LinkItem.h"

namespace orvelle {

class UserDefaults;

/// The key of the colour that new notes get; "yellow" until one is chosen.
QString newNoteColor(const UserDefaults &defaults);
/// False when it could not be stored.
bool setNewNoteColor(UserDefaults &defaults, const QString &colorKey);

/// An empty note with a name of its kind, in that colour.
LinkItem newNote(const UserDefaults &defaults, Timestamp now);

} // namespace orvelle
