#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace orvelle {

/// Where the slow work of the synchronisation is done.
class SyncRunner
{
public:
    virtual ~SyncRunner() = default;

    /// Runs `work`, then `done` on the main thread from the event loop if
    /// `context` still lives. Work is done in the order in which it was given.
    virtual void run(std::function<void()> work, QObject *context, std::function<void()> done) = 0;
};

/// One thread that lives while there is work. What was begun is waited for at
/// the end.
std::unique_ptr<SyncRunner> makeThreadSyncRunner();

} // namespace orvelle
