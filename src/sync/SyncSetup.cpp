#include "sync/SyncSetup.h"

#include "links/exchange/LinkExchange.h"

#include <memory>

namespace orvelle {

namespace {

/// One set-up on its way; its steps hold it.
class Setup : public std::enable_shared_from_this<Setup>
{
public:
    Setup(SyncControl &sync, const AskAboutExisting &ask, const Configured &completion)
        : m_sync(sync), m_ask(ask), m_told(completion), m_before(sync.place()), m_wasOn(sync.autoSyncEnabled())
    {
    }

    void start(const SyncPlace &place, const std::optional<QString> &password)
    {
        // What is there must not be merged before it is known whether it should.
        m_sync.setAutoSyncEnabled(false);
        m_sync.setPlace(place, password, [self = shared_from_this(), place](const std::optional<QString> &failure) {
            if (failure)
                self->restore(*failure);
            else if (place.kind == SyncPlace::Kind::None)
                self->complete(ConfigureCloudSyncResult::CreatedNew);
            else
                self->look();
        });
    }

private:
    using Existing = std::optional<PreparedImport>;

    void look()
    {
        m_sync.readExisting([self = shared_from_this()](const Result<Existing, CloudSyncError> &found) {
            if (!found)
                self->complete(found.error().description);
            else if (found->has_value())
                self->m_ask(
                    [self, existing = **found](ConfigureCloudSyncResult choice) { self->go(choice, existing); });
            else
                self->create();
        });
    }

    void go(ConfigureCloudSyncResult choice, const PreparedImport &existing)
    {
        if (choice == ConfigureCloudSyncResult::Cancelled)
            return goBack();
        if (choice == ConfigureCloudSyncResult::CreatedNew)
            return create();
        if (const auto failure = m_sync.useExisting(existing))
            return complete(*failure);
        finish(ConfigureCloudSyncResult::ImportedExisting);
    }

    void create()
    {
        m_sync.createNew([self = shared_from_this()](const Result<SyncResult, CloudSyncError> &result) {
            if (result)
                self->finish(ConfigureCloudSyncResult::CreatedNew);
            else
                self->complete(result.error().description);
        });
    }

    void finish(ConfigureCloudSyncResult result)
    {
        m_sync.setAutoSyncEnabled(true);
        complete(result);
    }

    void goBack()
    {
        m_sync.setPlace(m_before, std::nullopt, [self = shared_from_this()](const std::optional<QString> &failure) {
            if (failure)
                return self->complete(*failure);
            self->m_sync.setAutoSyncEnabled(self->m_wasOn);
            self->complete(ConfigureCloudSyncResult::Cancelled);
        });
    }

    /// The place was not taken, so the old one goes on.
    void restore(const QString &failure)
    {
        m_sync.setAutoSyncEnabled(m_wasOn);
        complete(failure);
    }

    void complete(const Result<ConfigureCloudSyncResult, QString> &result)
    {
        m_sync.placeIsSettled([self = shared_from_this(), result] { self->m_told(result); });
    }

    SyncControl &m_sync;
    AskAboutExisting m_ask;
    Configured m_told;
    SyncPlace m_before;
    bool m_wasOn;
};

} // namespace

void configureCloudSync(SyncControl &sync, const SyncPlace &place, const std::optional<QString> &password,
                        const AskAboutExisting &ask, const Configured &completion)
{
    const auto valid = sync.checkedPlace(place);
    if (!valid)
        return completion(syncPlaceRefusalText(valid.error()));
    std::make_shared<Setup>(sync, ask, completion)->start(*valid, password);
}

} // namespace orvelle
