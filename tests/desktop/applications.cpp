#include "desktop/tray_tools.h"
#include "platform/freedesktop/ActivationToken.h"
#include "platform/freedesktop/GioApplications.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// Desktop entries of the test's own, installed and elsewhere.
class ApplicationsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        installedFolder = qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s;
        ASSERT_TRUE(QDir().mkpath(installedFolder));
    }
    void TearDown() override { QDir(installedFolder).removeRecursively(); }

    QString made(const QString &result) const { return elsewhere.filePath(result); }
    QString entry(const QString &path, const QString &exec, const QString &more = {})
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write((u"[Desktop Entry]\nType=Application\nName=Probe\nName[fr]=Sonde\nKeywords=alpha;beta;\n"
                    "Icon=probe-icon\nPath=%3\nExec=%1\n%2\n"_s.arg(exec, more, elsewhere.path()))
                       .toUtf8());
        return path;
    }
    bool starts(const QString &path, const QString &file, const QString &id = {})
    {
        applications.launch(path, id);
        return waitFor([&] { return QFile::exists(made(file)); }, 20'000);
    }

    QString installedFolder;
    QTemporaryDir elsewhere;
    GioApplications applications;
};

TEST_F(ApplicationsTest, ReadsAnInstalledEntry)
{
    const QString path = entry(installedFolder + u"/org.example.Probe.desktop"_s, u"true"_s);
    entry(installedFolder + u"/hidden.desktop"_s, u"true"_s, u"NoDisplay=true"_s);
    const auto found = applications.find(path);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->id, u"org.example.Probe.desktop"_s);
    EXPECT_EQ(found->path, path);
    EXPECT_EQ(found->name, u"Probe"_s);
    EXPECT_EQ(found->keywords, (QStringList{u"alpha"_s, u"beta"_s}));
    EXPECT_EQ(found->icon, u"probe-icon"_s);
    EXPECT_EQ(applications.find(u"/old/place/x.desktop"_s, found->id), found) << "known by its id";
    QStringList ids;
    for (const DesktopApplication &each : applications.installed())
        ids += each.id;
    EXPECT_TRUE(ids.contains(found->id));
    EXPECT_FALSE(ids.contains(u"hidden.desktop"_s));
}

TEST_F(ApplicationsTest, WhatCannotBeStartedIsGone)
{
    const QString downloaded = entry(made(u"x.desktop"_s), u"touch %1"_s.arg(made(u"ran"_s)));
    struct {
        QString path;
        QString id;
    } const cases[] = {
        {downloaded, {}},
        {downloaded, u"org.example.Probe.desktop"_s},
        {u"/nowhere/y.desktop"_s, u"y.desktop"_s},
        {u"/nowhere/y.desktop"_s, u"../../../"_s + downloaded},
        {u"x.desktop"_s, {}},
        {u"/bin/sh"_s, {}},
        {installedFolder + u"/../../"_s + downloaded, {}},
        {entry(installedFolder + u"/lost.desktop"_s, u"/nowhere/program"_s), {}},
    };
    for (const auto &c : cases) {
        EXPECT_FALSE(applications.find(c.path, c.id)) << qPrintable(c.path);
        applications.launch(c.path, c.id);
    }
    settle();
    EXPECT_FALSE(QFile::exists(made(u"ran"_s)));
    // What the user has marked as a program may be started.
    QFile(downloaded).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_TRUE(starts(downloaded, u"ran"_s));
}

TEST_F(ApplicationsTest, NoShellReadsTheCommand)
{
    const QString path = entry(installedFolder + u"/shell.desktop"_s,
                               u"touch \"%1\" ; touch %2"_s.arg(made(u"a $(touch b)"_s), made(u"plain"_s)));
    EXPECT_TRUE(starts(path, u"plain"_s));
    EXPECT_TRUE(QFile::exists(made(u"a $(touch b)"_s)));
    EXPECT_FALSE(QFile::exists(made(u"b"_s)));
}

TEST_F(ApplicationsTest, AnnouncesTheStartWithItsTime)
{
    const QString path =
        entry(installedFolder + u"/told.desktop"_s, u"sh -c 'echo \"$DESKTOP_STARTUP_ID\" > %1'"_s.arg(made(u"id"_s)),
              u"StartupNotify=true"_s);
    ASSERT_TRUE(starts(path, u"id"_s));
    QByteArray id;
    waitFor([&] {
        QFile file(made(u"id"_s));
        return file.open(QIODevice::ReadOnly) && !(id = file.readAll().trimmed()).isEmpty();
    });
    const qsizetype time = id.indexOf("_TIME");
    EXPECT_GT(time, 0) << id.constData();
    EXPECT_GT(id.mid(time + 5).toULongLong(), 0U) << "without a time the window gets no focus";
}

TEST_F(ApplicationsTest, GivesOneProgramTheLeaveToTakeTheFocus)
{
    ASSERT_TRUE(takeActivationToken(u"leave-1"_s));
    for (const QByteArray expected : {"leave-1.", "."}) {
        const QString path =
            entry(installedFolder + u"/leave.desktop"_s,
                  u"sh -c 'echo \"$XDG_ACTIVATION_TOKEN.\" > %1.new; mv %1.new %1'"_s.arg(made(u"leave"_s)));
        EXPECT_TRUE(starts(path, u"leave"_s));
        QFile file(made(u"leave"_s));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll().trimmed(), expected);
        file.remove();
    }
}

TEST_F(ApplicationsTest, KeepsToItselfHowItsOwnWindowsAreShown)
{
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    const QString path = entry(
        installedFolder + u"/plain.desktop"_s,
        u"sh -c 'echo \"$QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT.\" > %1.new; mv %1.new %1'"_s.arg(made(u"hint"_s)));
    EXPECT_TRUE(starts(path, u"hint"_s));
    qunsetenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT");
    QFile file(made(u"hint"_s));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().trimmed(), ".");
}

TEST_F(ApplicationsTest, AsksOverTheBusWhereTheEntryWantsIt)
{
    const BusClient program;
    StubObject object;
    object.methods.insert(u"Activate"_s, [](const QDBusMessage &call) { return call.createReply(); });
    QDBusConnection bus = program.bus();
    ASSERT_TRUE(bus.registerService(u"org.example.Bused"_s));
    ASSERT_TRUE(bus.registerVirtualObject(u"/org/example/Bused"_s, &object));
    const QString path = entry(installedFolder + u"/org.example.Bused.desktop"_s,
                               u"touch %1"_s.arg(made(u"by-command"_s)), u"DBusActivatable=true"_s);
    applications.launch(path);
    EXPECT_TRUE(waitFor([&object] { return object.calls.contains(u"Activate"_s); }));
    EXPECT_FALSE(QFile::exists(made(u"by-command"_s)));
}

} // namespace
} // namespace orvelle::test
