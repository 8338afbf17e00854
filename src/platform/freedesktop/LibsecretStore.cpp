#include "platform/freedesktop/LibsecretStore.h"

#include "platform/freedesktop/GLibPointers.h"
#include "platform/freedesktop/SerialWorker.h"
#include "platform/freedesktop/SessionBusAddress.h"

#include <QLoggingCategory>

#include <libsecret/secret.h>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcSecrets, "Secrets", QtInfoMsg)

struct FreeValue {
    void operator()(SecretValue *value) const { secret_value_unref(value); }
};
using ValuePtr = std::unique_ptr<SecretValue, FreeValue>;

struct FreeTable {
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
};
using Attributes = std::unique_ptr<GHashTable, FreeTable>;

const SecretSchema *schema()
{
    static const SecretSchema ours = [] {
        SecretSchema made{};
        made.name = "org.orvelle.Orvelle";
        made.flags = SECRET_SCHEMA_NONE;
        made.attributes[0] = {"key", SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return &ours;
}

Attributes attributesOf(const QString &key, const QString &account)
{
    return Attributes(secret_attributes_build(schema(), "key", key.toUtf8().constData(), "account",
                                              account.toUtf8().constData(), nullptr));
}

SecretError taken(GError *error)
{
    if (error == nullptr)
        return {SecretError::Kind::Failed, u"no reason given"_s};
    SecretError result{SecretError::Kind::Failed,
                       QString::fromUtf8(g_quark_to_string(error->domain)) + u' ' + QString::number(error->code)};
    // A prompt that the user closed comes as a cancelled call.
    if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED) ||
        g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) ||
        (error->domain == G_DBUS_ERROR && g_dbus_error_is_remote_error(error) && strstr(error->message, "IsLocked")))
        result.kind = SecretError::Kind::Locked;
    g_error_free(error);
    return result;
}

} // namespace

/// What a question needs, on the worker's thread.
class LibsecretStore::Keyring
{
public:
    /// A fresh one each time: a keyring that was started again has forgotten
    /// the session.
    Result<ObjectPtr<SecretService>, SecretError> service()
    {
        if (!hasSessionBus())
            return SecretError{SecretError::Kind::Unavailable, u"no session bus"_s};
        GError *error = nullptr;
        secret_service_disconnect();
        const ObjectPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancel(), &error));
        if (!bus) {
            SecretError reason = taken(error);
            reason.kind = SecretError::Kind::Unavailable;
            return reason;
        }
        if (g_dbus_connection_is_closed(bus.get()))
            return SecretError{SecretError::Kind::Unavailable, u"the session bus is gone"_s};
        // The program does not end with its bus.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
        SecretService *service = secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, cancel(), &error);
        if (service != nullptr)
            return ObjectPtr<SecretService>(service);
        SecretError reason = taken(error);
        reason.kind = SecretError::Kind::Unavailable;
        return reason;
    }
    /// Of all questions, by the store's end.
    GCancellable *cancel() const { return m_cancel.get(); }

private:
    ObjectPtr<GCancellable> m_cancel{g_cancellable_new()};
};

/// Puts one question after the other, on a thread of its own.
class LibsecretStore::Worker
{
public:
    Worker() = default;
    ~Worker() { g_cancellable_cancel(m_keyring->cancel()); }
    Q_DISABLE_COPY_MOVE(Worker)

    /// Hands what `work` gives over to `done` on the main thread.
    template<typename T>
    void run(std::function<Result<T, SecretError>(Keyring &)> work,
             std::function<void(const Result<T, SecretError> &)> done)
    {
        m_thread.run([keyring = m_keyring, work = std::move(work), done = std::move(done)]() -> SerialWorker::Delivery {
            Result<T, SecretError> result = work(*keyring);
            if (!result && !g_cancellable_is_cancelled(keyring->cancel()))
                qCWarning(lcSecrets).noquote() << "The keyring does not answer as it should:" << result.error().detail;
            return [done, result = std::move(result)] { done(result); };
        });
    }

private:
    std::shared_ptr<Keyring> m_keyring = std::make_shared<Keyring>();
    QObject m_receiver;
    SerialWorker m_thread{&m_receiver};
};

namespace {

Result<std::optional<QByteArray>, SecretError> find(SecretService *service, GHashTable *attributes,
                                                    GCancellable *cancel)
{
    GError *error = nullptr;
    const auto flags = static_cast<SecretSearchFlags>(SECRET_SEARCH_UNLOCK | SECRET_SEARCH_LOAD_SECRETS);
    GList *items = secret_service_search_sync(service, schema(), attributes, flags, cancel, &error);
    if (error != nullptr)
        return taken(error);
    Result<std::optional<QByteArray>, SecretError> found = std::optional<QByteArray>();
    if (items != nullptr) {
        auto *item = static_cast<SecretItem *>(items->data);
        const ValuePtr value(secret_item_get_secret(item));
        gsize length = 0;
        if (const char *bytes = value ? secret_value_get(value.get(), &length) : nullptr)
            found = std::optional(QByteArray(bytes, static_cast<qsizetype>(length)));
        else if (secret_item_get_locked(item))
            found = SecretError{SecretError::Kind::Locked, u"the item stays locked"_s};
        else
            found = SecretError{SecretError::Kind::Failed, u"an item without a secret"_s};
    }
    g_list_free_full(items, g_object_unref);
    return found;
}

} // namespace

LibsecretStore::LibsecretStore() : m_worker(std::make_unique<Worker>()) {}

LibsecretStore::~LibsecretStore() = default;

void LibsecretStore::lookup(const QString &key, const QString &account,
                            std::function<void(const Result<std::optional<QByteArray>, SecretError> &)> done)
{
    using Found = Result<std::optional<QByteArray>, SecretError>;
    m_worker->run<std::optional<QByteArray>>(
        [key, account](Keyring &keyring) -> Found {
            const auto service = keyring.service();
            if (!service)
                return service.error();
            return find(service->get(), attributesOf(key, account).get(), keyring.cancel());
        },
        std::move(done));
}

void LibsecretStore::store(const QString &key, const QString &account, const QString &label, const QByteArray &secret,
                           std::function<void(const Result<Nothing, SecretError> &)> done)
{
    m_worker->run<Nothing>(
        [key, account, label, secret](Keyring &keyring) -> Result<Nothing, SecretError> {
            const auto service = keyring.service();
            if (!service)
                return service.error();
            const ValuePtr value(secret_value_new(secret.constData(), secret.size(), "application/octet-stream"));
            GError *error = nullptr;
            if (!secret_service_store_sync(service->get(), schema(), attributesOf(key, account).get(),
                                           SECRET_COLLECTION_DEFAULT, label.toUtf8().constData(), value.get(),
                                           keyring.cancel(), &error))
                return taken(error);
            return Nothing{};
        },
        std::move(done));
}

void LibsecretStore::remove(const QString &key, const QString &account,
                            std::function<void(const Result<Nothing, SecretError> &)> done)
{
    m_worker->run<Nothing>(
        [key, account](Keyring &keyring) -> Result<Nothing, SecretError> {
            const auto service = keyring.service();
            if (!service)
                return service.error();
            GError *error = nullptr;
            secret_service_clear_sync(service->get(), schema(), attributesOf(key, account).get(), keyring.cancel(),
                                      &error);
            if (error != nullptr)
                return taken(error);
            return Nothing{};
        },
        std::move(done));
}

} // namespace orvelle
