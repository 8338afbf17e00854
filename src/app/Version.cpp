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

} // namespace orvelle
