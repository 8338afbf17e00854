#pragma once

#include "platform/SecretStore.h"
#include "platform/freedesktop/http/QtHttpClient.h"
#include "platform/freedesktop/webdav/WebDavContainer.h"
#include "support/CloudContainerContract.h"
#include "support/FakeClock.h"

#include <QTemporaryDir>

namespace orvelle::test {

/// Time goes on when somebody waits for it, and then only as far.
class WaitedForClock : public FakeClock
{
public:
    void after(std::chrono::milliseconds delay, QObject *context, std::function<void()> fire) override
    {
        m_wanted = delay;
        FakeClock::after(delay, context, std::move(fire));
    }
    void advanceAsWanted() { advance(std::exchange(m_wanted, std::chrono::milliseconds(0))); }

private:
    std::chrono::milliseconds m_wanted{0};
};

/// A keyring whose content a test sets.
class KnownSecrets : public QObject, public SecretStore
{
public:
    Result<std::optional<QByteArray>, SecretError> answer = std::optional(QByteArray("geheim"));
    int lookups = 0;

    void lookup(const QString &, const QString &,
                std::function<void(const Result<std::optional<QByteArray>, SecretError> &)> done) override
    {
        ++lookups;
        QMetaObject::invokeMethod(
            this, [this, done] { done(answer); }, Qt::QueuedConnection);
    }
    void store(const QString &, const QString &, const QString &, const QByteArray &,
               std::function<void(const Result<Nothing, SecretError> &)>) override
    {
    }
    void remove(const QString &, const QString &, std::function<void(const Result<Nothing, SecretError> &)>) override {}
};

/// One machine's container on a server, with what it stands on.
template<typename ClockType>
class WebDavMachine
{
public:
    using FileResult = Result<CloudFile, CloudError>;
    static inline const QString name = QStringLiteral("shared.ovexport");

    WebDavMachine(ClockType &clock, const QUrl &folder, const QString &user = QStringLiteral("ann"))
        : m_clock(clock), http(clock, "Orvelle/0"), settings{.folderUrl = folder, .user = user}
    {
        restart();
    }

    void restart()
    {
        container.reset();
        container = std::make_unique<WebDavContainer>(settings, http, secrets, m_clock, cacheFolder, [] { return 0.; });
    }
    FileResult read()
    {
        return await<CloudFile>([this](auto done) { container->read(name, done); });
    }
    FileResult write(const QByteArray &bytes, const QByteArray &expected)
    {
        return await<CloudFile>([&](auto done) { container->write(name, bytes, expected, done); });
    }
    Result<QString, CloudError> test()
    {
        return await<QString>([this](auto done) { container->test(done); });
    }
    bool wait(const std::function<bool()> &condition)
    {
        return spinUntil([&] {
            if constexpr (requires { m_clock.advanceAsWanted(); })
                m_clock.advanceAsWanted();
            return condition();
        });
    }

private:
    template<typename T>
    Result<T, CloudError> await(const std::function<void(CloudContainer::Done<T>)> &ask)
    {
        auto got = std::make_shared<std::optional<Result<T, CloudError>>>();
        ask([got](const auto &result) { got->emplace(result); });
        wait([&] { return got->has_value(); });
        return got->value_or(CloudError{CloudError::Kind::Io, QStringLiteral("the test waited in vain")});
    }

    ClockType &m_clock;

public:
    QTemporaryDir cache;
    QString cacheFolder = cache.path();
    QtHttpClient http;
    KnownSecrets secrets;
    WebDavSettings settings;
    std::unique_ptr<WebDavContainer> container;
};

/// "ok", or the name of the error.
template<typename T>
std::string said(const Result<T, CloudError> &result)
{
    static const char *names[] = {"Unavailable", "Missing",        "NoData",        "Conflict", "Locked",
                                  "Unsafe",      "Authentication", "NoSecretStore", "NoSpace",  "NotADocument",
                                  "Tls",         "TimedOut",       "TooLarge",      "Io"};
    return result ? "ok" : names[int(result.error().kind)];
}

} // namespace orvelle::test
