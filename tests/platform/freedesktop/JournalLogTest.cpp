#include "platform/freedesktop/log/JournalLog.h"

#include "platform/freedesktop/PrivateMounts.h"
#include "platform/freedesktop/log/LogLine.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryFile>

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

namespace orvelle::test {

namespace {

Q_LOGGING_CATEGORY(lcTest, "LinkStore", QtDebugMsg)

/// Collects what is written to standard error while it lives.
class StandardError
{
public:
    StandardError() : m_before(::dup(STDERR_FILENO))
    {
        if (m_file.open())
            ::dup2(m_file.handle(), STDERR_FILENO);
    }
    ~StandardError() { restore(); }
    StandardError(const StandardError &) = delete;
    StandardError &operator=(const StandardError &) = delete;

    QStringList lines()
    {
        m_file.seek(0);
        return QString::fromUtf8(m_file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    void restore()
    {
        ::dup2(m_before, STDERR_FILENO);
        ::close(m_before);
    }
    QTemporaryFile m_file;
    int m_before;
};

void logEveryLevel()
{
    qCDebug(lcTest, "d");
    qCInfo(lcTest, "Migration effectu\u00e9e");
    qCWarning(lcTest, "w");
    qCCritical(lcTest, "e");
}

const QStringList everyLevel{QStringLiteral("debug LinkStore: d"),
                             QStringLiteral("info LinkStore: Migration effectu\u00e9e"),
                             QStringLiteral("warning LinkStore: w"), QStringLiteral("error LinkStore: e")};

QStringList withoutDates(const QStringList &lines)
{
    static const QRegularExpression date(QStringLiteral("^20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z "));
    QStringList result;
    for (const QString &line : lines)
        result += date.match(line).hasMatch() ? line.mid(25) : QStringLiteral("no date: ") + line;
    return result;
}

/// The system's own journal service, with its sockets and files in a /run that
/// only this process sees.
class PrivateJournal
{
public:
    PrivateJournal()
    {
        const QString program = QStringLiteral("/lib/systemd/systemd-journald");
        if (!QFile::exists(program) || !havePrivateMounts() || ::mount("tmpfs", "/run", "tmpfs", 0, "mode=755") != 0 ||
            ::mount("tmpfs", "/var/log", "tmpfs", 0, "mode=755") != 0)
            return;
        m_mounted = true;
        QDir().mkpath(QStringLiteral("/run/systemd/journald.conf.d"));
        QFile settings(QStringLiteral("/run/systemd/journald.conf.d/test.conf"));
        if (settings.open(QIODevice::WriteOnly))
            settings.write("[Journal]\nStorage=volatile\nReadKMsg=no\nAudit=no\nForwardToWall=no\n");
        settings.close();
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(program, {});
        m_running = m_process.waitForStarted();
        for (int i = 0; m_running && i < 500 && !QFile::exists(QStringLiteral("/run/systemd/journal/socket")); ++i)
            ::usleep(10'000);
    }
    ~PrivateJournal()
    {
        m_process.kill();
        m_process.waitForFinished();
        if (m_mounted) {
            ::umount2("/var/log", MNT_DETACH);
            ::umount2("/run", MNT_DETACH);
        }
    }
    PrivateJournal(const PrivateJournal &) = delete;
    PrivateJournal &operator=(const PrivateJournal &) = delete;

    bool isRunning() const { return m_running; }

private:
    QProcess m_process;
    bool m_mounted = false;
    bool m_running = false;
};

} // namespace

TEST(JournalLog, linesOnStandardErrorCarryLevelAndArea)
{
    StandardError standardError;
    {
        const JournalLog log(JournalLog::Target::StandardError);
        logEveryLevel();
        qInfo("no category");
        EXPECT_EQ(withoutDates(log.recentLines()).mid(0, 4), everyLevel);
        EXPECT_EQ(withoutDates(log.recentLines(1)), QStringList{QStringLiteral("info default: no category")});
        EXPECT_TRUE(log.recentLines(-1).isEmpty());
    }
    EXPECT_EQ(standardError.lines(), everyLevel + QStringList{QStringLiteral("info default: no category")});
}

TEST(JournalLog, aMessageCannotPassForTwo)
{
    const std::pair<QString, const char *> rows[] = {
        {QStringLiteral("a\ninfo LinkStore: forged"), "a\\ninfo LinkStore: forged"},
        {QStringLiteral("\r\x1b[2Jb\t\x7f"), "\\x0d\\x1b[2Jb\\t\\x7f"},
        {QStringLiteral("\u0085\u2028\u202e\u2066"), "\\x85\\u2028\\u202e\\u2066"},
        {QString(QChar(0)) + QStringLiteral("\u00e9\U0001F427"), "\\x00\u00e9\U0001F427"},
    };
    StandardError standardError;
    const JournalLog log(JournalLog::Target::StandardError);
    for (const auto &[message, shown] : rows) {
        qCInfo(lcTest).noquote() << message;
        EXPECT_EQ(standardError.lines().last(), QStringLiteral("info LinkStore: ") + QString::fromUtf8(shown));
        EXPECT_TRUE(log.recentLines(1).first().endsWith(QString::fromUtf8(shown)));
    }
    EXPECT_EQ(standardError.lines().size(), qsizetype(std::size(rows)));
}

TEST(JournalLog, keepsTheNewestLinesOfAllThreads)
{
    StandardError standardError;
    const JournalLog log(JournalLog::Target::StandardError);
    const auto many = [] {
        for (int i = 0; i < 600; ++i)
            qCInfo(lcTest, "line %d", i);
    };
    std::thread a(many), b(many);
    a.join();
    b.join();
    EXPECT_EQ(standardError.lines().size(), 1200);
    EXPECT_EQ(log.recentLines(5000).size(), JournalLog::ringSize);
    EXPECT_EQ(withoutDates(log.recentLines(1)), QStringList{QStringLiteral("info LinkStore: line 599")});
}

TEST(JournalLog, theJournalKeepsEveryFieldAndGivesTheNewestLinesBack)
{
    const PrivateJournal journal;
    if (!journal.isRunning())
        GTEST_SKIP() << "no journal service, or mounting is not permitted here";
    StandardError standardError;
    {
        const JournalLog log(JournalLog::Target::Automatic);
        qCInfo(lcTest, "first");
        logEveryLevel();
        qCInfo(lcTest, "a\nb");
    }
    // The journal takes messages in its own time.
    const auto arrived = [] {
        const auto lines = recentLogLines(100);
        return lines && lines->size() == 6;
    };
    for (int i = 0; i < 500 && !arrived(); ++i)
        ::usleep(10'000);
    QProcess reader;
    reader.start(QStringLiteral("journalctl"),
                 {QStringLiteral("SYSLOG_IDENTIFIER=orvelle"), QStringLiteral("-o"), QStringLiteral("export")});
    reader.waitForFinished();
    const QString entries = QString::fromUtf8(reader.readAllStandardOutput());
    for (const char *field : {"ORVELLE_AREA=LinkStore", "PRIORITY=4", "MESSAGE=Migration effectu\u00e9e",
                              "CODE_FILE=", "JournalLogTest.cpp", "CODE_LINE="})
        EXPECT_TRUE(entries.contains(QString::fromUtf8(field))) << field;

    const auto lines = recentLogLines(5);
    ASSERT_TRUE(lines) << lines.error().detail.toStdString();
    EXPECT_EQ(withoutDates(*lines), everyLevel + QStringList{QStringLiteral("info LinkStore: a\\nb")});
    EXPECT_TRUE(standardError.lines().isEmpty());
}

TEST(JournalLog, withoutAJournalTheReaderSaysSoAndStandardErrorServes)
{
    if (!havePrivateMounts() || ::mount("tmpfs", "/run", "tmpfs", 0, "") != 0 ||
        ::mount("tmpfs", "/var/log", "tmpfs", 0, "") != 0)
        GTEST_SKIP() << "mounting a file system is not permitted here";
    const auto lines = recentLogLines(5);
    ASSERT_FALSE(lines);
    EXPECT_EQ(lines.error().kind, LogReadError::Kind::NoJournal);

    StandardError standardError;
    const JournalLog log(JournalLog::Target::Journal);
    qCInfo(lcTest, "kept");
    EXPECT_EQ(standardError.lines(), QStringList{QStringLiteral("info LinkStore: kept")});
    ::umount2("/var/log", MNT_DETACH);
    ::umount2("/run", MNT_DETACH);
}

} // namespace orvelle::test
