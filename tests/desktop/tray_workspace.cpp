#include "desktop/tray_tools.h"
#include "platform/freedesktop/GioWorkspace.h"

#include <QDir>
#include <QFile>
#include <QRasterWindow>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

void writeFile(const QString &path, const QByteArray &content)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

/// Handlers as a user has them, which write down what they are asked to open.
class WorkspaceTest : public testing::Test
{
protected:
    static QString logPath() { return qEnvironmentVariable("ORVELLE_DESKTOP") + u"/opened"_s; }

    static void SetUpTestSuite()
    {
        const QString script = qEnvironmentVariable("ORVELLE_DESKTOP") + u"/note-arguments"_s;
        writeFile(script,
                  "#!/bin/sh\nname=$1; shift\nprintf '%s %s\\n' \"$name\" \"$*\" >> \"$ORVELLE_DESKTOP/opened\"\n");
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QString entries = qEnvironmentVariable("XDG_DATA_HOME") + u"/applications/"_s;
        for (const QByteArray name : {"web", "text", "files"}) {
            writeFile(entries + QString::fromLatin1(name) + u".desktop"_s,
                      "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + script.toUtf8() + ' ' + name +
                          " %u\nMimeType=x-scheme-handler/https;text/plain;inode/directory;\n");
        }
        writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/mimeapps.list"_s,
                  "[Default Applications]\nx-scheme-handler/https=web.desktop\nx-scheme-handler/mailto=web.desktop\n"
                  "text/plain=text.desktop\ninode/directory=files.desktop\n");
    }
    void SetUp() override
    {
        QFile::remove(logPath());
        writeFile(filePath(), "plain words");
        fileUri = QUrl::fromLocalFile(filePath()).toEncoded();
        folderUri = QUrl::fromLocalFile(folder.path()).toEncoded();
    }
    QString filePath() const { return folder.filePath(u"a file; $(touch x) 'é.txt"_s); }
    static QByteArray opened()
    {
        waitFor([] { return QFile::exists(logPath()) && QFile(logPath()).size() > 0; }, 5000);
        QFile file(logPath());
        const QByteArray lines = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        file.remove();
        return lines;
    }

    BusClient program;
    GioWorkspace workspace{program.bus()};
    QTemporaryDir folder;
    QByteArray fileUri, folderUri;
};

TEST_F(WorkspaceTest, AddressesReachTheirHandlerAsTheyAre)
{
    const QByteArrayList addresses{"https://example.org/a?b=c&d=%20e#f", "https://example.org/$(touch%20x);'%60id%60",
                                   "mailto:ada@example.org?subject=Hello%20you"};
    for (const QByteArray &address : addresses) {
        EXPECT_TRUE(workspace.openUrl(QUrl::fromEncoded(address)));
        EXPECT_EQ(opened(), "web " + address + '\n');
    }
    EXPECT_TRUE(workspace.openUrl(QUrl(u"smb://server/share"_s)));
    EXPECT_EQ(opened(), "files smb://server/share\n") << "shares without a handler go to the file manager";
}

TEST_F(WorkspaceTest, WhatIsNoAddressOrWouldRunCodeIsRefused)
{
    for (const QString &text : {u""_s,
                                u"example.org"_s,
                                u"/etc/passwd"_s,
                                u"http://[bad"_s,
                                u"javascript:alert(1)"_s,
                                u"JavaScript:alert(1)"_s,
                                u"data:text/html,x"_s,
                                u"vbscript:x"_s,
                                u"jar:file:///x.jar!/y"_s,
                                u"applications:///web.desktop"_s,
                                u"PROGRAMS:/web.desktop"_s,
                                u"\x01javascript:alert(1)"_s,
                                u"java\tscript:alert(1)"_s,
                                u"java\nscript:alert(1)"_s,
                                u"%6aavascript:alert(1)"_s,
                                u"javascript%3Aalert(1)"_s,
                                u"\u00A0javascript:alert(1)"_s,
                                u"jAvAsCrIpT://example.org/%0aalert(1)"_s,
                                u"file://elsewhere.example/etc/passwd"_s,
                                u"file:///etc/passwd%00.txt"_s})
        EXPECT_FALSE(workspace.openUrl(QUrl(text))) << qPrintable(text);
    for (const QString &path : {u""_s, u"relative/file"_s}) {
        EXPECT_FALSE(workspace.openFile(path));
        EXPECT_FALSE(workspace.showFolder(path));
        EXPECT_FALSE(workspace.reveal(path));
    }
    settle();
    EXPECT_FALSE(QFile::exists(logPath()));
}

TEST_F(WorkspaceTest, FilesAndFoldersOpenWithTheirDefault)
{
    EXPECT_TRUE(workspace.openFile(filePath()));
    EXPECT_EQ(opened(), "text " + filePath().toUtf8() + '\n');
    EXPECT_TRUE(workspace.showFolder(folder.path()));
    EXPECT_EQ(opened(), "files " + folder.path().toUtf8() + '\n') << "no file manager on the bus";
    EXPECT_TRUE(workspace.reveal(filePath()));
    EXPECT_EQ(opened(), "files " + folder.path().toUtf8() + '\n');
}

TEST_F(WorkspaceTest, TheFileManagerOnTheBusComesFirst)
{
    StubObject manager;
    QList<QVariantList> asked;
    bool works = true;
    for (const QString &method : {u"ShowFolders"_s, u"ShowItems"_s}) {
        manager.methods[method] = [&](const QDBusMessage &call) {
            asked += call.arguments();
            return works ? call.createReply() : call.createErrorReply(QDBusError::Failed, u"no"_s);
        };
    }
    BusClient other;
    auto bus = other.bus();
    bus.registerVirtualObject(u"/org/freedesktop/FileManager1"_s, &manager);
    ASSERT_TRUE(bus.registerService(u"org.freedesktop.FileManager1"_s));
    workspace.showFolder(folder.path());
    workspace.reveal(filePath());
    EXPECT_TRUE(waitFor([&] { return asked.size() == 2; }));
    EXPECT_EQ(manager.calls, (QStringList{u"ShowFolders"_s, u"ShowItems"_s}));
    EXPECT_EQ(asked[0][0].toStringList(), QStringList(QString::fromLatin1(folderUri)));
    EXPECT_EQ(asked[1][0].toStringList(), QStringList(QString::fromLatin1(fileUri)));
    settle();
    EXPECT_FALSE(QFile::exists(logPath())) << "opened once only";

    works = false;
    workspace.showFolder(folder.path());
    EXPECT_EQ(opened(), "files " + folder.path().toUtf8() + '\n');
    bus.unregisterService(u"org.freedesktop.FileManager1"_s);
}

TEST_F(WorkspaceTest, TheFocusGoesBackToWhoHadIt)
{
    QRasterWindow first, second;
    for (QRasterWindow *window : {&first, &second}) {
        window->resize(200, 100);
        window->show();
        EXPECT_TRUE(waitFor([&] { return workspace.focusedWindow() == window->winId(); }));
    }
    workspace.focusWindow(first.winId());
    EXPECT_TRUE(waitFor([&] { return workspace.focusedWindow() == first.winId(); }));
    EXPECT_TRUE(waitFor([&] { return first.isActive(); }));

    const WindowToken gone = second.winId();
    second.destroy();
    for (const WindowToken nothing : {WindowToken(0), gone, WindowToken(0xdeadbeef), ~WindowToken(0)})
        workspace.focusWindow(nothing);
    settle();
    EXPECT_EQ(workspace.focusedWindow(), first.winId());
}

} // namespace
} // namespace orvelle::test
