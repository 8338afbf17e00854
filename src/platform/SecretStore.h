#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace orvelle {

struct SecretError {
    enum class Kind {
        Unavailable, ///< no keyring runs
        Locked,      ///< the user did not unlock it
        Failed,
    };
    Kind kind = Kind::Failed;
    QString detail = {}; ///< for the log; never a secret
};

/// The user's keyring. Secrets are told apart by a key of ours, such as
/// "webdav" or "sync-passphrase", together with an account, such as the
/// server's address with the user's name.
///
/// Main thread; callbacks run there from the event loop, never from inside the
/// call, and not at all after the store is gone. The desktop may ask the user
/// to unlock the keyring meanwhile, which has no time limit.
class SecretStore
{
public:
    struct Nothing {
    };

    virtual ~SecretStore() = default;

    /// Absent when there is no such secret.
    virtual void lookup(const QString &key, const QString &account,
                        std::function<void(const Result<std::optional<QByteArray>, SecretError> &)> done) = 0;
    /// `label` is what keyring programs show.
    virtual void store(const QString &key, const QString &account, const QString &label, const QByteArray &secret,
                       std::function<void(const Result<Nothing, SecretError> &)> done) = 0;
    /// Also succeeds when there is no such secret.
    virtual void remove(const QString &key, const QString &account,
                        std::function<void(const Result<Nothing, SecretError> &)> done) = 0;
};

} // namespace orvelle
