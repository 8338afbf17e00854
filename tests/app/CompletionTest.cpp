#include "app/cli/Completion.h"

#include "app/cli/CommandLine.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {

namespace {

/// What bash offers for the last of these words.
QStringList completed(const QString &line)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"script"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(completionScript(u"bash"_s).value_or(QByteArray()));
    file.close();
    const QStringList words = line.split(u' ');
    QString array;
    for (const QString &word : words)
        array += u" '"_s + word + u'\'';
    QProcess bash;
    bash.setWorkingDirectory(folder.path());
    bash.start(u"bash"_s, {u"--norc"_s, u"-c"_s,
                           u"set -u; . ./script; COMP_WORDS=(%1); COMP_CWORD=%2; compopt() { :; }; _orvelle; "
                           "printf '%s\\n' \"${COMPREPLY[@]}\""_s.arg(array)
                               .arg(words.size() - 1)});
    EXPECT_TRUE(bash.waitForFinished());
    EXPECT_EQ(bash.readAllStandardError(), "");
    return QString::fromUtf8(bash.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

TEST(Completion, OffersWhatFits)
{
    const struct {
        QString line;
        QStringList offered;
    } cases[] = {
        {u"orvelle tog"_s, {u"toggle"_s}},        {u"orvelle export-"_s, {u"export-bookmarks"_s}},
        {u"orvelle --v"_s, {u"--version"_s}},     {u"orvelle snapshots re"_s, {u"restore"_s}},
        {u"orvelle defaults wr"_s, {u"write"_s}}, {u"orvelle import x.ovexport --mo"_s, {u"--mode"_s}},
        {u"orvelle import scr"_s, {u"script"_s}}, {u"orvelle links scr"_s, {}},
        {u"orvelle scr"_s, {u"script"_s}},        {u"orvelle nonsense --mo"_s, {}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(completed(c.line), c.offered) << c.line.toStdString();
}

TEST(Completion, IsAValidScriptForEachShellThatIsHere)
{
    for (const QString &shell : {u"bash"_s, u"zsh"_s, u"fish"_s}) {
        const auto script = completionScript(shell);
        ASSERT_TRUE(script);
        for (const Command &command : commands())
            EXPECT_TRUE(script->contains(QByteArray(command.name).split(' ').last())) << command.name;
        const QString program = QStandardPaths::findExecutable(shell);
        if (program.isEmpty())
            continue;
        QProcess check;
        check.start(program, {u"-n"_s, u"/dev/stdin"_s});
        check.write(*script);
        check.closeWriteChannel();
        ASSERT_TRUE(check.waitForFinished());
        EXPECT_EQ(check.exitCode(), 0) << check.readAllStandardError().constData();
    }
    EXPECT_FALSE(completionScript(u"tcsh"_s));
}

} // namespace

} // namespace orvelle::test
