#include "platform/freedesktop/LibsecretStore.h"

#include "support/CloudContainerContract.h"
#include "support/LogCapture.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace orvelle {

using test::spinUntil;

namespace {

/// A bus that starts nothing by itself, with or without a keyring on it.
class KeyringBus
{
public:
    KeyringBus() : m_before(qgetenv("DBUS_SESSION_BUS_ADDRESS"))
    {
        QFile config(m_home.filePath(u"bus.conf"_s));
        config.open(QFile::WriteOnly);
        config.write("<busconfig><type>session</type><listen>unix:dir=" + m_home.path().toUtf8() +
                     "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                     "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        config.close();
        for (QProcess *each : {&m_daemon, &m_keyring}) // also when this test is killed
            each->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_daemon.start(u"dbus-daemon"_s,
                       {u"--config-file="_s + config.fileName(), u"--nofork"_s, u"--print-address"_s});
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(10'000)) {
        }
        const QByteArray address = m_daemon.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        m_bus = QDBusConnection::connectToBus(QString::fromUtf8(address), u"keyring test"_s);
    }
    ~KeyringBus()
    {
        QDBusConnection::disconnectFromBus(u"keyring test"_s);
        for (QProcess *each : {&m_keyring, &m_daemon}) {
            each->kill();
            each->waitForFinished();
        }
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_before);
    }
    Q_DISABLE_COPY_MOVE(KeyringBus)

    static bool isInstalled() { return !QStandardPaths::findExecutable(u"gnome-keyring-daemon"_s).isEmpty(); }

    bool startKeyring()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
            environment.insert(QString::fromLatin1(name), m_home.path());
        environment.remove(u"DISPLAY"_s);
        m_keyring.setProcessEnvironment(environment);
        m_keyring.start(u"gnome-keyring-daemon"_s, {u"--foreground"_s, u"--unlock"_s, u"--components=secrets"_s});
        m_keyring.write("login");
        m_keyring.closeWriteChannel();
        return spinUntil([this] {
            return m_bus.interface()->isServiceRegistered(u"org.freedesktop.secrets"_s) &&
                   QFileInfo::exists(m_home.filePath(u"keyrings/login.keyring"_s));
        });
    }
    void lockKeyring()
    {
        auto call = QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, u"/org/freedesktop/secrets"_s,
                                                   u"org.freedesktop.Secret.Service"_s, u"Lock"_s);
        call << QVariant::fromValue(
            QList<QDBusObjectPath>{QDBusObjectPath(u"/org/freedesktop/secrets/collection/login"_s)});
        EXPECT_EQ(m_bus.call(call).type(), QDBusMessage::ReplyMessage);
    }

private:
    QByteArray m_before;
    QTemporaryDir m_home;
    QProcess m_daemon;
    QProcess m_keyring;
    QDBusConnection m_bus{QString()};
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
    if (!KeyringBus::isInstalled())
        GTEST_SKIP() << "the package gnome-keyring is not installed";
    KeyringBus bus;
    ASSERT_TRUE(bus.startKeyring());
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
    bus.lockKeyring();
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
        const KeyringBus bus;
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
    const KeyringBus bus;
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
