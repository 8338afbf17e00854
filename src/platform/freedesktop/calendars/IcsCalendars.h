#pragma once

#include "platform/CalendarStore.h"
#include "platform/freedesktop/MountVolumes.h"
#include "platform/freedesktop/SerialWorker.h"
#include "platform/freedesktop/folder/FolderArrivals.h"

namespace orvelle {

class Descriptor;
class IcsIndex;

/// The calendars in folders of `.ics` files (RFC 5545), also one file for each
/// event and a folder for each calendar. Files are read beside the main
/// thread; folders are watched by inotify, also for their coming and going.
class IcsCalendars : public CalendarStore
{
    Q_OBJECT

public:
    /// `own` are the user's mail addresses in lower case, by which invitations
    /// name the user; may be empty.
    explicit IcsCalendars(const QStringList &folders, const QStringList &own = {}, QObject *parent = nullptr);
    /// Waits a while for a reading that is under way, which is told to end.
    ~IcsCalendars() override;

    /// Where calendars usually are when nobody said, whether that exists or not.
    static QStringList usualFolders();

    const QStringList &folders() const { return m_folders; }
    void setFolders(const QStringList &folders);

    /// Whether one of the folders is there. On a distant volume, where only the
    /// reader looks, it is taken to be.
    bool isAvailable() const override;
    Access access() const override { return isAvailable() ? Access::Granted : Access::Denied; }
    void requestAccess(std::function<void(const AccessAnswer &)> done) override;
    void fetch(Timestamp from, Timestamp to, std::function<void(const QList<CalendarEvent> &)> done) override;
    void setWatching(bool watching) override;

private:
    void beginAnew();
    void waitForMissing();
    void beginAgain();
    void readNotices();
    QStringList presentFolders() const;

    MountVolumes m_volumes;
    QStringList m_folders;
    QStringList m_own;
    QStringList m_present;                 ///< those of the folders that were there when reading began
    std::shared_ptr<Descriptor> m_inotify; ///< null while nobody watches; a reading adds to it
    std::unique_ptr<QSocketNotifier> m_notices;
    std::unique_ptr<FolderArrivals> m_arrivals; ///< while somebody watches
    std::shared_ptr<IcsIndex> m_index;          ///< belongs to the reader while it runs
    SerialWorker m_reader{this};
};

} // namespace orvelle
