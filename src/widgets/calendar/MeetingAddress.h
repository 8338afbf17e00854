#pragma once

#include <QUrl>

namespace orvelle {

struct CalendarEvent;

/// Where the event's meeting can be joined: the first https address that the
/// organiser named for it, else the first known form of a meeting's address in
/// the event's URL, place and description, in this order. Empty when there is
/// none. Never an address with a user name, nor one of another scheme.
QUrl meetingAddress(const CalendarEvent &event);

} // namespace orvelle
