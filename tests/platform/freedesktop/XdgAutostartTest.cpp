#include "platform/freedesktop/XdgAutostart.h"

#include "platform/freedesktop/AutostartEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

using Status = LaunchAtLogin::Status;

/// A machine with two Orvelles, a script, and a desktop called KDE.
class XdgAutostartTest : public testing::Test
{
protected:
    XdgAutostartTest()
    {
        for (const char *program : {"new/orvelle", "old/orvelle", "bin/script", "odd \"$`\\ é/orvelle"})
            install(QString::fromUtf8(program));
        places = {at(u"config/autostart"_s),
                  {at(u"xdg1/autostart"_s), at(u"xdg2/autostart"_s)},
                  {u"X-Cinnamon"_s, u"KDE"_s},
                  at(u"new/orvelle"_s)};
    }
    QString at(const QString &path) const { return folder.filePath(path); }
    void install(const QString &program) const
    {
        write(program, "#!/bin/sh\n");
        QFile::setPermissions(at(program), QFile::ReadOwner | QFile::ExeOwner);
    }
    void write(const QString &name, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(at(name)).path());
        QFile file(at(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size());
    }
    QByteArray read(const QString &name) const
    {
        QFile file(at(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// An entry with lines after "[Desktop Entry]"; "PROGRAM" is the new Orvelle.
    QByteArray entry(const char *lines) const
    {
        QByteArray text = "[Desktop Entry]\n# kept\nType=Application\nName=Mine\n";
        text += lines;
        return text.replace("ROOT", folder.path().toUtf8()).replace("PROGRAM", places.program.toUtf8()) + '\n';
    }
    XdgAutostart service() const { return XdgAutostart(places); }
    Status status() const { return service().status(); }

    const QString userEntry = u"config/autostart/org.orvelle.Orvelle.desktop"_s;
    QTemporaryDir folder;
    AutostartPlaces places;
};

TEST_F(XdgAutostartTest, WritesAnEntryThatDesktopsAccept)
{
    EXPECT_EQ(status(), Status::Disabled);
    for (const char *program : {"new/orvelle", "odd \"$`\\ é/orvelle"}) {
        SCOPED_TRACE(program);
        places.program = at(QString::fromUtf8(program));
        ASSERT_TRUE(service().registerApplication());
        EXPECT_EQ(status(), Status::Enabled);
        const QFileInfo info(at(userEntry));
        EXPECT_EQ(info.permissions() & 0x0fff, QFile::ReadUser | QFile::WriteUser);
        EXPECT_EQ(QFileInfo(info.path()).permissions() & 0x0fff, QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
        const QString validator = QStandardPaths::findExecutable(u"desktop-file-validate"_s);
        if (!validator.isEmpty()) {
            QProcess check;
            check.start(validator, {at(userEntry)});
            check.waitForFinished();
            EXPECT_EQ(check.exitCode(), 0) << check.readAll().toStdString();
        }
        EXPECT_TRUE(service().followProgram());
        const auto written = AutostartEntry::read(at(userEntry));
        ASSERT_TRUE(written);
        EXPECT_FALSE(written->leadsElsewhere(places.program));
        EXPECT_TRUE(read(userEntry).contains(" --login\n"));
        ASSERT_TRUE(service().unregisterApplication());
        EXPECT_FALSE(QFile::exists(at(userEntry))) << "nothing of ours stays";
    }
}

TEST_F(XdgAutostartTest, ReadsAnEntryAsDesktopsDo)
{
    struct Case {
        const char *lines;
        Status status;
    };
    const Case cases[] = {
        {"Exec=PROGRAM", Status::Enabled},
        {"Exec=PROGRAM\nHidden=false", Status::Enabled},
        {"Exec=PROGRAM\nHidden=true", Status::Disabled},
        {"Exec=PROGRAM\nX-GNOME-Autostart-enabled=false", Status::Disabled},
        {"Exec=PROGRAM\nX-MATE-Autostart-enabled=false", Status::Disabled},
        {"Exec=PROGRAM\nX-GNOME-Autostart-enabled=true", Status::Enabled},
        {"Exec=PROGRAM\nOnlyShowIn=GNOME;", Status::Disabled},
        {"Exec=PROGRAM\nOnlyShowIn=", Status::Disabled},
        {"Exec=PROGRAM\nOnlyShowIn=GNOME;KDE", Status::Enabled},
        {"Exec=PROGRAM\nNotShowIn=KDE;", Status::Disabled},
        {"Exec=PROGRAM\nNotShowIn=GNOME;", Status::Enabled},
        {"Exec=PROGRAM\nTryExec=ROOT/gone", Status::Disabled},
        {"Exec=PROGRAM\nTryExec=PROGRAM", Status::Enabled},
        {"Exec=ROOT/gone", Status::Disabled},
        {"Exec=", Status::Disabled},
        {"Exec='unbalanced", Status::Disabled},
        {"Exec=PROGRAM\nType=Link", Status::Disabled},
        {"Exec=ROOT/bin/script --wait 5", Status::Enabled},
        {"Exec=sh -c \"sleep 1; orvelle\"", Status::Enabled},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.lines);
        write(userEntry, entry(c.lines));
        EXPECT_EQ(status(), c.status);
    }
    for (const QByteArray &unreadable : {QByteArray("Exec=x"), QByteArray("\xff\xfe\0[", 4), QByteArray()}) {
        write(userEntry, unreadable);
        EXPECT_EQ(status(), Status::Disabled);
    }
}

TEST_F(XdgAutostartTest, TheUsersEntryOutranksTheSystems)
{
    write(u"xdg2/autostart/org.orvelle.Orvelle.desktop"_s, entry("Exec=PROGRAM\nX-Mark=system"));
    EXPECT_EQ(status(), Status::Enabled);
    ASSERT_TRUE(service().unregisterApplication());
    EXPECT_EQ(status(), Status::Disabled);
    EXPECT_TRUE(read(userEntry).contains("X-Mark=system"));
    ASSERT_TRUE(service().registerApplication());
    EXPECT_EQ(status(), Status::Enabled);
    QFile::remove(at(userEntry));
    write(u"xdg1/autostart/org.orvelle.Orvelle.desktop"_s, entry("Exec=PROGRAM\nHidden=true"));
    EXPECT_EQ(status(), Status::Disabled);
}

TEST_F(XdgAutostartTest, SwitchingKeepsWhatTheUserWrote)
{
    const char *const offs[] = {
        "Exec=PROGRAM --early\nHidden=true",
        "Exec=PROGRAM --early\nX-GNOME-Autostart-enabled=false",
        "Exec=PROGRAM --early\nOnlyShowIn=GNOME;",
        "Exec=PROGRAM --early\nNotShowIn=KDE;XFCE;",
        "Exec=ROOT/gone/orvelle --early\nTryExec=ROOT/gone/orvelle",
    };
    for (const char *lines : offs) {
        SCOPED_TRACE(lines);
        write(userEntry, entry(lines) + "X-Own=mine\n\n[Desktop Action a]\nName=A\nExec=true\n");
        ASSERT_TRUE(service().registerApplication());
        EXPECT_EQ(status(), Status::Enabled);
        ASSERT_TRUE(service().unregisterApplication());
        EXPECT_EQ(status(), Status::Disabled);
        const QByteArray kept = read(userEntry);
        for (const char *own : {"# kept", "Name=Mine", "X-Own=mine", "[Desktop Action a]", " --early"})
            EXPECT_TRUE(kept.contains(own)) << own;
        EXPECT_TRUE(kept.contains(places.program.toUtf8()));
    }
    EXPECT_FALSE(read(userEntry).contains("GNOME"));

    write(userEntry, entry("Exec=PROGRAM\nTryExec=ROOT/gone/other\nHidden=true"));
    EXPECT_FALSE(service().registerApplication()) << "the desktop would not start it";
    EXPECT_EQ(status(), Status::Disabled);

    write(userEntry, "no entry");
    ASSERT_TRUE(service().registerApplication());
    EXPECT_EQ(status(), Status::Enabled);
    EXPECT_EQ(read(userEntry + u".unreadable"_s), "no entry");
}

TEST_F(XdgAutostartTest, ALinkGoesOnBeingOne)
{
    write(u"dotfiles/orvelle.desktop"_s, entry("Exec=PROGRAM"));
    QDir().mkpath(places.userFolder);
    ASSERT_TRUE(QFile::link(at(u"dotfiles/orvelle.desktop"_s), at(userEntry)));
    ASSERT_TRUE(service().unregisterApplication());
    EXPECT_TRUE(QFileInfo(at(userEntry)).isSymLink());
    EXPECT_TRUE(read(u"dotfiles/orvelle.desktop"_s).contains("Hidden=true"));
}

TEST_F(XdgAutostartTest, FollowsTheProgram)
{
    struct Case {
        const char *before;
        const char *after; ///< null: as it was
    };
    const Case cases[] = {
        {"Exec=ROOT/gone/orvelle", "Exec=PROGRAM"},
        {"Exec=ROOT/old/orvelle --a \"b c\" %F", "Exec=PROGRAM --a \"b c\" %F"},
        {"Exec=\"ROOT/gone/Orvelle-1.2.AppImage\"\nTryExec=ROOT/gone/Orvelle-1.2.AppImage",
         "Exec=PROGRAM\nTryExec=PROGRAM"},
        {"Exec=ROOT/old/orvelle\nHidden=true", "Exec=PROGRAM\nHidden=true"},
        {"Exec=ROOT/gone/wrapper orvelle", "Exec=PROGRAM --login"},
        {"Exec=PROGRAM --a", nullptr},
        {"Exec=ROOT/link/orvelle", nullptr},
        {"Exec=ROOT/bin/script ROOT/old/orvelle", nullptr},
        {"Exec=PROGRAM\nTryExec=ROOT/gone/other", nullptr},
    };
    QDir().mkpath(at(u"link"_s));
    ASSERT_TRUE(QFile::link(places.program, at(u"link/orvelle"_s)));
    ASSERT_TRUE(service().followProgram());
    EXPECT_FALSE(QFile::exists(at(userEntry))) << "none is made";
    for (const Case &c : cases) {
        SCOPED_TRACE(c.before);
        write(userEntry, entry(c.before));
        ASSERT_TRUE(service().followProgram());
        EXPECT_EQ(read(userEntry).toStdString(), entry(c.after ? c.after : c.before).toStdString());
    }
    write(userEntry, entry("Exec=ROOT/old/orvelle"));
    places.program = at(u"gone/orvelle"_s);
    ASSERT_TRUE(service().followProgram());
    EXPECT_EQ(read(userEntry), entry("Exec=ROOT/old/orvelle")) << "a program that was deleted since is no better";
}

TEST_F(XdgAutostartTest, SaysWhatFailed)
{
    write(u"config/autostart"_s, "a file in the way");
    const auto outcome = service().registerApplication();
    ASSERT_FALSE(outcome);
    EXPECT_FALSE(outcome.error().description.isEmpty());
    EXPECT_EQ(read(u"config/autostart"_s), "a file in the way");
}

TEST_F(XdgAutostartTest, TheLastingPathSurvivesUpgrades)
{
    QProcessEnvironment environment;
    environment.insert(u"PATH"_s, u"relative::"_s + at(u"old"_s) + u':' + at(u"link"_s));
    QDir().mkpath(at(u"link"_s));
    ASSERT_TRUE(QFile::link(at(u"new/orvelle"_s), at(u"link/orvelle"_s)));
    EXPECT_EQ(lastingProgramPath(at(u"new/orvelle"_s), environment), at(u"link/orvelle"_s));
    EXPECT_EQ(lastingProgramPath(at(u"bin/script"_s), environment), at(u"bin/script"_s));
    environment.insert(u"APPIMAGE"_s, at(u"bin/script"_s));
    environment.insert(u"APPDIR"_s, at(u"new"_s));
    EXPECT_EQ(lastingProgramPath(at(u"new/orvelle"_s), environment), at(u"bin/script"_s));
    environment.insert(u"APPDIR"_s, at(u"elsewhere"_s));
    EXPECT_EQ(lastingProgramPath(at(u"new/orvelle"_s), environment), at(u"link/orvelle"_s));
}

} // namespace
} // namespace orvelle::test
