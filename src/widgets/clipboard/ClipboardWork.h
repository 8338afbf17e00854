#pragma once

#include "widgets/clipboard/ClipboardEntry.h"

#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <functional>

namespace orvelle {

/// Runs what takes long (hashing, decoding, files) on one thread beside the
/// main one, and hands the results back to it.
class ClipboardWork : public QObject
{
    Q_OBJECT

public:
    ClipboardWork();
    /// Waits for the job that is running; what waits is dropped.
    ~ClipboardWork() override;

    using Found = std::optional<ClipboardEntry>;
    /// `job` runs beside; `done` on the main thread, if `context` still lives
    /// then. A found entry that nobody takes is cleaned up.
    void find(QObject *context, std::function<Found()> job, std::function<void(Found)> done);
    using Forms = QList<PasteboardItem>;
    void load(QObject *context, std::function<Forms()> job, std::function<void(Forms)> done);

private:
    QThreadPool m_pool;
};

} // namespace orvelle
