#include "platform/freedesktop/LibsecretStore.h"

#include "support/CloudContainerContract.h"
#include "support/Keyring.h"
#include "support/LogCapture.h"
#include "support/QuietBus.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle {

using test::spinUntil;

namespace {

/// What the store finds as the bus of its session, with or without a keyring.
class SessionBus
{
public:
    SessionBus() { qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toUtf8()); }
    ~SessionBus() { qputenv("DBUS_SESSION_BUS_ADDRESS", m_before); }
    Q_DISABLE_COPY_MOVE(SessionBus)

    QString address() const { return m_bus.address(); }

private:
    QByteArray m_before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    test::QuietBus m_bus;
};

template<typename T>
using Answer = std::optional<Result<T, SecretError>>;

template<typename T>
std::string said(const Answer<T> &answer)
{
    static const char *names[] = {"Unavailable", "Locked", "Failed"};
    if (!answer)
        return "no answer";
    return *answer ? "ok" : names[int(answer->error().kind)];
}

class Asking
{
public:
    Answer<std::optional<QByteArray>> lookup(const QString &account)
    {
        Answer<std::optional<QByteArray>> got;
        store.lookup(u"webdav"_s, account, [&](const auto &result) { got.emplace(result); });
        EXPECT_FALSE(got) << "from inside the call";
        spinUntil([&] { return got.has_value(); });
        return got;
    }
    Answer<SecretStore::Nothing> keep(const QString &account, const QByteArray &secret)
    {
        Answer<SecretStore::Nothing> got;
        store.store(u"webdav"_s, account, u"Orvelle (test)"_s, secret,
                    [&](const auto &result) { got.emplace(result); });
        spinUntil([&] { return got.has_value(); });
        return got;
    }
    Answer<SecretStore::Nothing> remove(const QString &account)
    {
        Answer<SecretStore::Nothing> got;
        store.remove(u"webdav"_s, account, [&](const auto &result) { got.emplace(result); });
        spinUntil([&] { return got.has_value(); });
        return got;
    }

    LibsecretStore store;
};

} // namespace

TEST(LibsecretStore, SecretsAreKeptInTheKeyringUntilTheyAreRemoved)
{
    if (!test::Keyring::isInstalled())
        GTEST_SKIP() << "the package gnome-keyring is not installed";
    const SessionBus bus;
    test::Keyring keyring(bus.address());
    ASSERT_TRUE(keyring.start());
    const test::LogCapture log;
    const QByteArray secrets[] = {"hunter2", QByteArray("\0\xff\nbytes", 8), "pass phrase é", "changed"};
    for (const QByteArray &secret : secrets) {
        Asking asking;
        ASSERT_EQ(said(asking.keep(u"ann https://a.example/"_s, secret)), "ok");
        ASSERT_EQ(said(asking.keep(u"bob https://a.example/"_s, "another's")), "ok");
        Asking later;
        const auto found = later.lookup(u"ann https://a.example/"_s);
        ASSERT_EQ(said(found), "ok");
        EXPECT_EQ(**found, secret);
    }
    Asking asking;
    EXPECT_EQ(said(asking.remove(u"ann https://a.example/"_s)), "ok");
    EXPECT_EQ(said(asking.remove(u"ann https://a.example/"_s)), "ok") << "there is nothing left to remove";
    const auto gone = asking.lookup(u"ann https://a.example/"_s);
    ASSERT_EQ(said(gone), "ok");
    EXPECT_FALSE((*gone)->has_value());
    EXPECT_TRUE((*asking.lookup(u"bob https://a.example/"_s))->has_value());

    // Nobody is there to unlock it.
    ASSERT_TRUE(keyring.lock());
    EXPECT_EQ(said(asking.lookup(u"bob https://a.example/"_s)), "Locked");
    EXPECT_EQ(said(asking.keep(u"bob https://a.example/"_s, "topsecret")), "Locked");
    const QString lines = log.lines().join(u'\n');
    for (const QString &word : {u"hunter2"_s, u"topsecret"_s, u"another's"_s, u"ann"_s, u"bob"_s, u"example"_s})
        EXPECT_FALSE(lines.contains(word)) << lines.toStdString();
}

TEST(LibsecretStore, WithoutAKeyringItSaysSoAtOnce)
{
    const auto expectUnavailable = [] {
        Asking asking;
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(said(asking.lookup(u"ann"_s)), "Unavailable");
        EXPECT_EQ(said(asking.keep(u"ann"_s, "x")), "Unavailable");
        EXPECT_EQ(said(asking.remove(u"ann"_s)), "Unavailable");
        EXPECT_LT(timer.elapsed(), 5000);
    };
    {
        SCOPED_TRACE("a bus without a keyring");
        const SessionBus bus;
        expectUnavailable();
    }
    SCOPED_TRACE("a bus that is gone");
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    expectUnavailable();
    qputenv("DBUS_SESSION_BUS_ADDRESS", before);
}

TEST(LibsecretStore, AStoreThatIsGoneAnswersNobody)
{
    const SessionBus bus;
    int answers = 0;
    {
        Asking asking;
        for (int i = 0; i < 5; ++i)
            asking.store.lookup(u"webdav"_s, u"ann"_s, [&](const auto &) { ++answers; });
    }
    Asking other;
    EXPECT_EQ(said(other.lookup(u"ann"_s)), "Unavailable");
    EXPECT_EQ(answers, 0);
}

} // namespace orvelle
