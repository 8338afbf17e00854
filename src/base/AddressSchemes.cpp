#include "base/AddressSchemes.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array codeSchemes{"javascript"_L1, "data"_L1, "vbscript"_L1, "livescript"_L1, "mocha"_L1, "jscript"_L1,
                                 // A page or a program inside of an archive.
                                 "jar"_L1, "wyciwyg"_L1,
                                 // The lists of programs of file managers.
                                 "applications"_L1, "programs"_L1, "exec"_L1, "shell"_L1};

constexpr std::array remoteSchemes{"http"_L1, "https"_L1, "mailto"_L1, "tel"_L1,    "sms"_L1, "geo"_L1,  "gopher"_L1,
                                   "irc"_L1,  "ircs"_L1,  "xmpp"_L1,   "matrix"_L1, "sip"_L1, "sips"_L1, "webcal"_L1};

constexpr std::array fileViewSchemes{"trash"_L1,   "desktop"_L1,    "recent"_L1,      "recentlyused"_L1, "admin"_L1,
                                     "archive"_L1, "zip"_L1,        "tar"_L1,         "burn"_L1,         "cdda"_L1,
                                     "gphoto2"_L1, "mtp"_L1,        "afc"_L1,         "computer"_L1,     "network"_L1,
                                     "starred"_L1, "favorites"_L1,  "baloosearch"_L1, "timeline"_L1,     "search"_L1,
                                     "remote"_L1,  "activities"_L1, "tags"_L1,        "kdeconnect"_L1};

template<typename Schemes>
bool holds(const Schemes &schemes, QStringView scheme)
{
    return std::ranges::any_of(
        schemes, [scheme](QLatin1StringView each) { return scheme.compare(each, Qt::CaseInsensitive) == 0; });
}

} // namespace

bool isCodeScheme(QStringView scheme)
{
    return holds(codeSchemes, scheme);
}

bool isRemoteScheme(QStringView scheme)
{
    return holds(remoteSchemes, scheme);
}

bool isFileViewScheme(QStringView scheme)
{
    return holds(fileViewSchemes, scheme);
}

} // namespace orvelle
