#include "sync/SaneDates.h"

#include "sync/ItemDates.h"

namespace orvelle {

CountedDate SaneDates::itemDate(const LinkItem &item) const
{
    return count(orvelle::itemDate(item));
}

CountedDate SaneDates::contentDate(const LinkItem &note) const
{
    return count(orvelle::contentDate(note));
}

} // namespace orvelle
