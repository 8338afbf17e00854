#pragma once

#include "base/PatientThreads.h"
#include "platform/DistantFiles.h"

#include <QHash>
#include <QPointer>
#include <QQueue>

#include <memory>

namespace orvelle {

/// A thread for each volume that is being looked at.
class DistantFileThreads : public DistantFiles
{
public:
    DistantFileThreads();
    /// Leaves to itself what hangs; nothing is delivered any more.
    ~DistantFileThreads() override;

    void look(const QString &volume, QObject *receiver, const Look &look) override;

private:
    struct Waiting {
        QPointer<QObject> receiver;
        Look look;
    };

    void beginNext(const QString &volume);

    QObject m_context;
    std::shared_ptr<FileBookmarks> m_bookmarks;
    QHash<QString, QQueue<Waiting>> m_waiting; ///< the first of each is under way
    PatientThreads m_threads;
};

} // namespace orvelle
