#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <csignal>
#include <memory>
#include <utility>
#include <vector>

namespace orvelle {

/// SIGTERM, SIGHUP and SIGINT as a signal of the event loop. One instance at a
/// time: handlers belong to the process. A signal that was ignored when the
/// program started ("nohup") stays ignored, and a second SIGINT ends the
/// program at once.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    /// Restores the handlers from before.
    ~TerminationSignals() override;

signals:
    void received();

private:
    void install(int number, int flags);

    int m_pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> m_readable;
    std::vector<std::pair<int, struct sigaction>> m_former;
};

} // namespace orvelle
