#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QStringList>

namespace orvelle {

/// Waits for folders that are not there yet, by inotify on the nearest one
/// above each. Main thread.
class FolderArrivals : public QObject
{
    Q_OBJECT

public:
    explicit FolderArrivals(const QStringList &missing, QObject *parent = nullptr);
    ~FolderArrivals() override;

signals:
    /// One of them is there now; comes once, then nothing is waited for.
    void arrived();

private:
    bool isOneThere() const;
    void lookOut();
    void readNotices();

    QStringList m_missing;
    int m_inotify = -1;
    std::unique_ptr<QSocketNotifier> m_notices;
};

} // namespace orvelle
