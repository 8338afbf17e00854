#include "app/cli/CommandResult.h"

namespace orvelle {

QString printable(QString text)
{
    for (QChar &c : text) {
        if (!c.isPrint() && !c.isSurrogate())
            c = u' ';
    }
    return text;
}

} // namespace orvelle
