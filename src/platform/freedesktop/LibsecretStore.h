#pragma once

#include "platform/SecretStore.h"

#include <memory>

namespace orvelle {

/// The keyring that speaks the Secret Service protocol of freedesktop.org,
/// through libsecret. Secrets lie in the keyring's default collection under a
/// schema of ours, with `key` and `account` as attributes, which the keyring
/// does not encrypt.
///
/// libsecret is asked on a thread of this object, one question after the
/// other, as its asynchronous calls would need a GLib main loop under ours.
/// Nothing is connected before the first question. Destroying the store takes
/// back a question that waits for the user, and waits a moment for that.
///
///     LibsecretStore secrets;
///     secrets.lookup("webdav", account, [](const auto &found) { ... });
class LibsecretStore : public SecretStore
{
public:
    LibsecretStore();
    ~LibsecretStore() override;
    LibsecretStore(const LibsecretStore &) = delete;
    LibsecretStore &operator=(const LibsecretStore &) = delete;

    void lookup(const QString &key, const QString &account,
                std::function<void(const Result<std::optional<QByteArray>, SecretError> &)> done) override;
    void store(const QString &key, const QString &account, const QString &label, const QByteArray &secret,
               std::function<void(const Result<Nothing, SecretError> &)> done) override;
    void remove(const QString &key, const QString &account,
                std::function<void(const Result<Nothing, SecretError> &)> done) override;

private:
    class Keyring;
    class Worker;
    std::unique_ptr<Worker> m_worker;
};

} // namespace orvelle
