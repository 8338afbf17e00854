#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>

#include <memory>

class QThreadPool;

namespace orvelle {

struct LinkItem;

/// Whether files and folders of links are still there, asked of the disk on
/// threads of its own, so that a network volume that does not answer stalls
/// nobody. Main thread; one object may serve several views.
class LinkPathChecker : public QObject
{
    Q_OBJECT

public:
    explicit LinkPathChecker(QObject *parent = nullptr);
    ~LinkPathChecker() override;

    /// What is known now: true for a file or folder that is gone. The first
    /// question about a path answers false and asks the disk; changed() tells
    /// when the answer turns out to be another one.
    bool isBroken(const LinkItem &item) const;

    /// Asks the disk again about every path asked about so far.
    void recheck();

signals:
    void changed();

private:
    void ask(const QString &path) const;
    void take(const QString &path, bool broken);

    /// Leaves a thread behind that still waits for a dead volume.
    struct LeavePool {
        void operator()(QThreadPool *pool) const;
    };

    std::unique_ptr<QThreadPool, LeavePool> m_pool;
    mutable QHash<QString, bool> m_known; ///< path to "is gone"
    mutable QSet<QString> m_asked;        ///< without an answer yet
};

} // namespace orvelle
