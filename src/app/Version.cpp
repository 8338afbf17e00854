#include "app/Version.h"

namespace orvelle {

QString versionText()
{
    return QStringLiteral(ORVELLE_VERSION);
}

QString buildText()
{
    return QStringLiteral(ORVELLE_BUILD);
}

QString updateHost()
{
    return QStringLiteral(ORVELLE_UPDATE_HOST);
}

QString tipPage()
{
    return QStringLiteral(ORVELLE_TIP_PAGE);
}

} // namespace orvelle
