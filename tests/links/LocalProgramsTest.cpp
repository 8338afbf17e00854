#include "links/LocalPrograms.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using Kind = std::optional<ProgramKind>;

constexpr auto plain = QFile::ReadOwner | QFile::WriteOwner;
constexpr auto runnable = plain | QFile::ExeOwner;

class LocalProgramsTest : public testing::Test
{
protected:
    QString write(const QString &name, const QByteArray &content, QFile::Permissions permissions = plain)
    {
        const QString path = folder.filePath(name);
        QFile file(path);
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size());
        file.setPermissions(permissions);
        return path;
    }

    QTemporaryDir folder;
};

TEST_F(LocalProgramsTest, ProgramsAreToldFromDocumentsByNameContentAndRights)
{
    struct {
        const char16_t *name;
        QByteArray content;
        QFile::Permissions permissions;
        Kind expected;
    } const cases[] = {
        {u"letter.txt", "words", plain, {}},
        {u"picture.png", "\x89PNG\r\n\x1a\n", plain, {}},
        {u"picture on a disk that marks all.png", "\x89PNG\r\n\x1a\n", runnable, {}},
        {u"paper on a disk that marks all.pdf", "%PDF-1.4\n", runnable, {}},
        {u"tool",
         "\x7f"
         "ELF\2\1\1",
         plain, ProgramKind::Executable},
        {u"letter.pdf",
         "\x7f"
         "ELF\2\1\1",
         plain, ProgramKind::Executable},
        {u"setup.txt", "MZ\x90", plain, ProgramKind::Executable},
        {u"run me", "echo no first line", runnable, ProgramKind::Executable},
        {u"bytes", "\xfe\x81\x93\xc7", runnable, ProgramKind::Executable},
        {u"run.txt", "#!/bin/sh\n", plain, ProgramKind::Script},
        {u"marked.txt", "\xEF\xBB\xBF#!/bin/sh\n", plain, ProgramKind::Script},
        {u"letter", "# x\n[Desktop Entry]\nExec=true\n", plain, ProgramKind::DesktopEntry},
        {u"Letter.DESKTOP", "", plain, ProgramKind::DesktopEntry},
        {u"letter.pdf.desktop. ", "", plain, ProgramKind::DesktopEntry},
        {u"game.jar", "PK", plain, ProgramKind::ProgramFile},
        {u"Setup.EXE", "", plain, ProgramKind::ProgramFile},
        {u"tool.AppImage", "", plain, ProgramKind::ProgramFile},
        {u"macro.py", "", plain, ProgramKind::ProgramFile},
        {u"exe", "words", plain, {}},
    };
    for (const auto &each : cases) {
        const QString path = write(QString::fromUtf16(each.name), each.content, each.permissions);
        EXPECT_EQ(programAt(path), each.expected) << qPrintable(path);
        EXPECT_EQ(programBehind(LinkType::File, path).has_value(), each.expected.has_value());
        QFile::remove(path);
    }
}

TEST_F(LocalProgramsTest, ALinkToAProgramIsOne)
{
    const QString tool = write(u"tool"_s, "#!/bin/sh\n", runnable);
    const QString link = folder.filePath(u"letter.txt"_s);
    ASSERT_TRUE(QFile::link(tool, link));
    EXPECT_EQ(programAt(link), ProgramKind::Script);
    for (const QString &path : {folder.path(), folder.filePath(u"nothing.sh"_s), u""_s, u"/dev/null"_s})
        EXPECT_EQ(programAt(path), Kind()) << qPrintable(path);
    EXPECT_EQ(programBehind(LinkType::Folder, tool)->kind, ProgramKind::Script) << "a folder that is a file";
}

TEST_F(LocalProgramsTest, AddressesAreSeenThrough)
{
    const QString tool = write(u"my tool"_s, "#!/bin/sh\n", runnable);
    const QString odd = write(u"tool?x=1"_s, "#!/bin/sh\n", runnable);
    const QString folderPath = folder.path();
    const QString encoded = QString::fromLatin1(QUrl::fromLocalFile(tool).path(QUrl::FullyEncoded).toLatin1());
    QString hex; // every character as its number
    for (const char c : tool.toUtf8())
        hex += c == '/' ? u"/"_s : u"%%1"_s.arg(static_cast<int>(static_cast<uchar>(c)), 2, 16, QChar(u'0'));
    for (const QString &address :
         {u"file://"_s + tool, u"FILE://"_s + encoded, u"file:"_s + encoded, u"  file://localhost"_s + encoded,
          u"file://elsewhere.example"_s + encoded, u"file:////"_s + encoded.mid(1), u"file://"_s + hex,
          u"file://"_s + folderPath + u"/none/../my%20tool"_s, u"file://"_s + encoded + u"?a#b"_s,
          u"file://"_s + folderPath + u"/tool?x=1"_s, u"file://"_s + folderPath + u"/tool%3Fx=1"_s}) {
        const auto program = programBehind(LinkType::Url, address);
        ASSERT_TRUE(program) << qPrintable(address);
        EXPECT_EQ(program->kind, ProgramKind::Script);
        EXPECT_TRUE(QFileInfo::exists(program->file)) << "a file is named: " << qPrintable(program->file);
    }
}

TEST_F(LocalProgramsTest, OnSharesTheNameDecides)
{
    struct {
        const char16_t *address;
        bool isProgram;
    } const cases[] = {
        {u"smb://server/share/setup.exe", true},
        {u"SMB://server/share/setup.EXE", true},
        {u"smb://server/share/setup%2Eexe", true},
        {u"smb://server/share/setup.exe%20", true},
        {u"sftp://host/home/x.sh", true},
        {u"dav://host/x.desktop?y", true},
        {u"nfs://host/tool.run#x", true},
        {u"trash:///tool.AppImage", true},
        {u"admin:///usr/local/x.sh", true},
        {u"recent:///a.desktop", true},
        {u"archive://file%3A%2F%2F%2Fx.zip/run.sh", true},
        {u"smb://server/share", false},
        {u"smb://server.exe/share/", false},
        {u"smb://server/share/letter.odt", false},
        {u"trash:///", false},
        {u"https://example.org/setup.exe", false},
        {u"mailto:ada@example.sh", false},
    };
    for (const auto &each : cases)
        EXPECT_EQ(programBehind(LinkType::Url, QString::fromUtf16(each.address)).has_value(), each.isProgram)
            << qPrintable(QString::fromUtf16(each.address));
}

} // namespace
} // namespace orvelle::test
