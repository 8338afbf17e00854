#include "links/PromptBookmarks.h"

#include "platform/Volumes.h"

namespace orvelle {

Result<QByteArray, FileBookmarkError> PromptBookmarks::create(const QString &path) const
{
    if (m_volumes.distantVolumeHolding(path).isEmpty())
        return ForwardingBookmarks::create(path);
    return FileBookmarkError{QStringLiteral("on a volume that may not answer"), true};
}

} // namespace orvelle
