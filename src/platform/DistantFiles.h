#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace orvelle {

class FileBookmarks;

/// Looks at files on volumes from which an answer may never come (see
/// Volumes::distantVolumeHolding()). Main thread, but for the looking.
class DistantFiles
{
public:
    /// What is done with the outcome, on the main thread.
    using Delivery = std::function<void()>;
    /// On another thread, and possibly for ever: may use only what it holds, and
    /// the bookmarks, which are there for as long as it takes.
    using Look = std::function<Delivery(FileBookmarks &)>;

    virtual ~DistantFiles() = default;

    /// One look after the other on each volume, so that a dead one holds up only
    /// what is asked of it. Delivered through `receiver`, and not when that is
    /// gone.
    virtual void look(const QString &volume, QObject *receiver, const Look &look) = 0;
};

} // namespace orvelle
