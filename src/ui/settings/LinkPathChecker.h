#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>

namespace orvelle {

class LinkStore;
struct LinkItem;

/// Whether files and folders of links are still there, asked of the disk on a
/// thread of its own, and of a distant volume as LinkStore does. Main thread;
/// one object may serve several views.
class LinkPathChecker : public QObject
{
    Q_OBJECT

public:
    explicit LinkPathChecker(const LinkStore &links, QObject *parent = nullptr);
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

    const LinkStore &m_links;
    mutable QThreadPool m_disk;
    mutable QHash<QString, bool> m_known; ///< path to "is gone"
    mutable QSet<QString> m_asked;        ///< without an answer yet
};

} // namespace orvelle
