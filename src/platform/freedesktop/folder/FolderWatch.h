#pragma once

#include "platform/freedesktop/folder/FolderIo.h"

#include <QStringList>

namespace orvelle {

/// inotify on a folder, or, while that is missing, on the nearest of the
/// folders above it that is there. Costs nothing while nothing happens. File
/// systems of other machines tell only of changes made from this one.
class FolderWatch
{
public:
    struct Notices {
        QStringList names;     ///< of files that came, went or were written
        bool onFolder = false; ///< the watched folder itself, or more than could be told
        bool isEmpty() const { return names.isEmpty() && !onFolder; }
    };

    explicit FolderWatch(const QString &folder);

    /// Readable when there are notices; -1 where the system has no watches left.
    int descriptor() const { return m_inotify.get(); }
    /// Sets the watch on what there is now. May block; one thread at a time.
    void arm();
    /// Main thread.
    Notices take() const;

private:
    bool watch(const QString &folder);

    QString m_folder;
    Descriptor m_inotify;
    int m_watched = -1;
    bool m_saidWhy = false;
};

} // namespace orvelle
