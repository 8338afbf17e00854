#include "ui/settings/LinkIconChoices.h"

namespace orvelle {

std::span<const IconChoice> iconChoices(const LinkItem &item)
{
    if (item.isGroup())
        return groupIcons();
    if (item.type == LinkType::Note)
        return noteIcons();
    return item.isNetworkLink() ? networkIcons() : std::span<const IconChoice>();
}

} // namespace orvelle
