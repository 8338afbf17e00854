#include "widgets/calendar/MeetingAddress.h"

#include "platform/CalendarStore.h"

#include <QRegularExpression>

#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

/// The addresses that meeting services give to their rooms: host or any host
/// below it, and what the path begins with.
struct MeetingForm {
    QLatin1StringView host;
    QLatin1StringView path;
};
constexpr std::array forms{
    MeetingForm{"zoom.us"_L1, "/j/"_L1},
    MeetingForm{"zoom.us"_L1, "/my/"_L1},
    MeetingForm{"zoom.us"_L1, "/w/"_L1},
    MeetingForm{"zoom.us"_L1, "/s/"_L1},
    MeetingForm{"zoom.us"_L1, "/wc/"_L1},
    MeetingForm{"zoomgov.com"_L1, "/j/"_L1},
    MeetingForm{"meet.google.com"_L1, "/"_L1},
    MeetingForm{"hangouts.google.com"_L1, "/"_L1},
    MeetingForm{"teams.microsoft.com"_L1, "/l/meetup-join/"_L1},
    MeetingForm{"teams.microsoft.com"_L1, "/meet/"_L1},
    MeetingForm{"teams.live.com"_L1, "/meet/"_L1},
    MeetingForm{"join.skype.com"_L1, "/"_L1},
    MeetingForm{"webex.com"_L1, "/"_L1},
    MeetingForm{"meet.jit.si"_L1, "/"_L1},
    MeetingForm{"8x8.vc"_L1, "/"_L1},
    MeetingForm{"whereby.com"_L1, "/"_L1},
    MeetingForm{"gotomeeting.com"_L1, "/join/"_L1},
    MeetingForm{"meet.goto.com"_L1, "/"_L1},
    MeetingForm{"bluejeans.com"_L1, "/"_L1},
    MeetingForm{"chime.aws"_L1, "/"_L1},
    MeetingForm{"facetime.apple.com"_L1, "/join"_L1},
    MeetingForm{"framatalk.org"_L1, "/"_L1},
    MeetingForm{"visio.numerique.gouv.fr"_L1, "/"_L1},
    MeetingForm{"meet.element.io"_L1, "/"_L1},
    MeetingForm{"app.gather.town"_L1, "/"_L1},
    MeetingForm{"discord.gg"_L1, "/"_L1},
};
/// Programs that anybody can run on a host of their own.
constexpr std::array ownRooms{"/call/"_L1, "/index.php/call/"_L1, "/bigbluebutton/"_L1, "/b/"_L1, "/rooms/"_L1};
constexpr std::array ownHostNames{"meet."_L1,      "jitsi."_L1, "bbb."_L1,       "visio."_L1,
                                  "visioconf."_L1, "talk."_L1,  "conference."_L1};

bool isSafe(const QUrl &url)
{
    return url.isValid() && url.scheme() == "https"_L1 && !url.host().isEmpty() && url.userInfo().isEmpty();
}

bool isHostOrBelow(const QString &host, QLatin1StringView of)
{
    return host == of || (host.endsWith(of) && host.at(host.size() - of.size() - 1) == u'.');
}

bool isMeeting(const QUrl &url)
{
    const QString host = url.host().toLower();
    const QString path = url.path();
    if (!isSafe(url) || path.size() < 2)
        return false;
    const auto matches = [&](const MeetingForm &form) {
        return isHostOrBelow(host, form.host) && path.startsWith(form.path, Qt::CaseInsensitive) &&
               path.size() > form.path.size();
    };
    if (std::ranges::any_of(forms, matches))
        return true;
    const auto hostBegins = [&](QLatin1StringView name) { return host.startsWith(name); };
    const auto pathBegins = [&](QLatin1StringView begin) { return path.startsWith(begin); };
    return std::ranges::any_of(ownHostNames, hostBegins) ||
           (std::ranges::any_of(ownRooms, pathBegins) && path.count(u'/') >= 2 &&
            (host.startsWith("cloud."_L1) || host.startsWith("nextcloud."_L1)));
}

/// The first meeting in a text, which may be HTML.
QUrl meetingIn(const QString &text)
{
    static const QRegularExpression link(uR"(https://[^\s<>"'\\\]\[{}|^`]+)"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    auto matches = link.globalMatch(text);
    while (matches.hasNext()) {
        QString found = matches.next().captured();
        found.replace("&amp;"_L1, "&"_L1);
        // What ends the sentence around it is no part of it.
        while (!found.isEmpty() && u".,;:!?)>*"_s.contains(found.back()))
            found.chop(1);
        const QUrl url(found, QUrl::StrictMode);
        if (isMeeting(url))
            return url;
    }
    return {};
}

} // namespace

QUrl meetingAddress(const CalendarEvent &event)
{
    for (const QString &each : event.conferences) {
        const QUrl url(each.trimmed(), QUrl::StrictMode);
        if (isSafe(url))
            return url;
    }
    for (const QString &text : {event.url, event.location, event.description}) {
        if (const QUrl found = meetingIn(text); !found.isEmpty())
            return found;
    }
    return {};
}

} // namespace orvelle
