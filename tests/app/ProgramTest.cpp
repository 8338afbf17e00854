#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace orvelle::test {
namespace {

struct Answer {
    int code = -1;
    QByteArray out;
    QByteArray err;
};

/// The real program with a home, and if wanted a session bus, of its own.
class Program : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_home.isValid());
        m_environment = QProcessEnvironment::systemEnvironment();
        for (const char *unset : {"DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "WAYLAND_DISPLAY", "LANGUAGE", "LC_ALL"})
            m_environment.remove(QString::fromLatin1(unset));
        const std::pair<const char *, const char *> folders[] = {
            {"HOME", ""}, {"XDG_CONFIG_HOME", "/config"}, {"XDG_DATA_HOME", "/data"}, {"XDG_RUNTIME_DIR", "/runtime"}};
        for (const auto &[name, folder] : folders) {
            const QString path = m_home.path() + QLatin1StringView(folder);
            ASSERT_TRUE(QDir().mkpath(path));
            m_environment.insert(QString::fromLatin1(name), path);
        }
        m_environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        // Only what shows a window may need one.
        m_environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    }

    void TearDown() override
    {
        for (const auto &process : m_started) {
            process->terminate();
            EXPECT_TRUE(process->waitForFinished(10'000));
        }
        if (m_bus) {
            m_bus->terminate();
            m_bus->waitForFinished();
        }
    }

    void startBus()
    {
        m_bus = std::make_unique<QProcess>();
        m_bus->setProcessEnvironment(m_environment);
        m_bus->start(QStringLiteral("dbus-daemon"),
                     {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
        ASSERT_TRUE(m_bus->waitForReadyRead(10'000));
        m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                             QString::fromLatin1(m_bus->readLine()).trimmed());
    }

    std::unique_ptr<QProcess> start(const QStringList &arguments)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(m_environment);
        process->start(program(), arguments);
        return process;
    }

    /// The application itself, without a screen to look at.
    void startApplication()
    {
        m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_started.push_back(start({}));
        QElapsedTimer patience;
        patience.start();
        // A command that only a running application can answer.
        while (run({QStringLiteral("toggle")}).code != 0 && patience.elapsed() < 20'000) {
        }
    }

    Answer run(const QStringList &arguments)
    {
        const auto process = start(arguments);
        if (!process->waitForFinished(60'000))
            return {};
        return {process->exitCode(), process->readAllStandardOutput(), process->readAllStandardError()};
    }

    static QString program() { return QStringLiteral(ORVELLE_BINARY_DIR "/bin/orvelle"); }

    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    std::unique_ptr<QProcess> m_bus;
    std::vector<std::unique_ptr<QProcess>> m_started;
};

QStringList split(const char *line)
{
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

TEST_F(Program, AnswersEachWrongUseWithOneSentence)
{
    const std::pair<const char *, int> cases[] = {
        {"frobnicate", 2},
        {"--frobnicate", 2},
        {"links extra", 2},
        {"links --xml", 2},
        {"add", 2},
        {"add https://e --name", 2},
        {"defaults", 2},
        {"defaults write K int", 2},
        {"defaults write K colour red", 2},
        {"defaults write K int x", 1},
        {"defaults read none", 1},
        {"defaults delete none", 1},
        {"add gopher://host", 1},
        {"add https://e --group nobody", 1},
        {"open nobody", 1},
        {"undo", 1},
        {"snapshots restore nothing", 1},
        {"toggle", 1},
        {"quit", 1},
        {"", 1},
        {"settings", 1},
    };
    for (const auto &[line, code] : cases) {
        SCOPED_TRACE(line);
        const Answer answer = run(split(line));
        EXPECT_EQ(answer.code, code);
        EXPECT_TRUE(answer.out.isEmpty());
        EXPECT_EQ(answer.err.count('\n'), 1) << answer.err.toStdString();
        EXPECT_TRUE(answer.err.startsWith("orvelle: "));
    }
    EXPECT_EQ(run({QStringLiteral("add"), QString(100'000, u'x')}).code, 1);
    EXPECT_EQ(run({QStringLiteral("--help")}).code, 0);
    EXPECT_TRUE(run({QStringLiteral("--version")}).out.startsWith("orvelle "));
}

/// The same session of commands with and without a running application.
void session(const std::function<Answer(const QStringList &)> &run, const QString &folder)
{
    const Answer added = run({QStringLiteral("add"), QStringLiteral("https://example.org/a")});
    ASSERT_EQ(added.code, 0) << added.err.toStdString();
    EXPECT_EQ(run({QStringLiteral("add"), folder, QStringLiteral("--name=Ordner é")}).code, 0);
    const QJsonArray links = QJsonDocument::fromJson(run(split("links --json")).out).array();
    ASSERT_EQ(links.size(), 2);
    EXPECT_EQ(links.at(0)[u"name"].toString(), u"example.org");
    EXPECT_EQ(links.at(0)[u"stableId"].toString().toUtf8(), added.out.trimmed());
    EXPECT_EQ(links.at(1)[u"type"].toString(), u"folder");
    EXPECT_EQ(links.at(1)[u"name"].toString(), u"Ordner é");
    const QByteArray stored = run(split("defaults read orvelle_savedLinks")).out;
    EXPECT_EQ(QByteArray::fromBase64(stored.trimmed()) + '\n', run(split("links --json")).out);

    const QJsonArray menu = QJsonDocument::fromJson(run(split("menu --json")).out).array();
    ASSERT_EQ(menu.size(), 3);
    EXPECT_EQ(menu.at(0)[u"title"].toString(), u"example.org");
    EXPECT_EQ(menu.at(2)[u"kind"].toString(), u"bottomRow");

    const QString odd = QStringLiteral("-1 \"é\"");
    EXPECT_EQ(run({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("K"), QStringLiteral("strings"),
                   QStringLiteral("[\"\\u0000\"]")})
                  .code,
              0);
    EXPECT_EQ(run(split("defaults read K")).out, "[\"\\u0000\"]\n");
    EXPECT_EQ(
        run({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("K"), QStringLiteral("string"), odd})
            .code,
        0);
    EXPECT_EQ(run(split("defaults read K")).out, odd.toUtf8() + '\n');
    EXPECT_TRUE(run(split("defaults list")).out.contains("K string\n"));
    EXPECT_EQ(run(split("defaults delete K")).code, 0);

    // Replacing the stored tree from outside reaches whoever holds it.
    EXPECT_EQ(run(split("defaults write orvelle_savedLinks data W10=")).code, 0);
    EXPECT_EQ(run(split("links --json")).out, "[]\n");
}

TEST_F(Program, WorksAloneWithoutDisplayAndBus)
{
    session([this](const QStringList &arguments) { return run(arguments); }, m_home.path());
}

TEST_F(Program, WorksInsideTheRunningApplication)
{
    startBus();
    startApplication();
    session([this](const QStringList &arguments) { return run(arguments); }, m_home.path());
    EXPECT_EQ(run(split("quit")).code, 0);
    EXPECT_TRUE(m_started.front()->waitForFinished(10'000));
    EXPECT_EQ(m_started.front()->exitCode(), 0);
    EXPECT_EQ(run(split("toggle")).code, 1);
    m_started.clear();
}

TEST_F(Program, SpeaksTheUsersLanguage)
{
    m_environment.insert(QStringLiteral("LANGUAGE"), QStringLiteral("fr"));
    m_environment.insert(QStringLiteral("LANG"), QStringLiteral("fr_FR.UTF-8"));
    EXPECT_TRUE(run({QStringLiteral("menu")}).out.contains("Réglages"));
}

TEST_F(Program, AHundredStartsLeaveOneProcess)
{
    startBus();
    m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    for (int i = 0; i < 100; ++i)
        m_started.push_back(start({}));
    std::size_t running = m_started.size();
    QElapsedTimer patience;
    patience.start();
    while (running > 1 && patience.elapsed() < 100'000) {
        running = 0;
        for (const auto &process : m_started) {
            process->waitForFinished(1);
            running += process->state() == QProcess::NotRunning ? 0 : 1;
        }
    }
    EXPECT_EQ(running, 1U);
    std::erase_if(m_started, [](const auto &process) {
        const bool ended = process->state() == QProcess::NotRunning;
        EXPECT_TRUE(!ended || process->exitCode() == 0) << process->readAllStandardError().toStdString();
        return ended;
    });
}

TEST_F(Program, WithoutBusALockKeepsTheSecondStartAway)
{
    m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    m_started.push_back(start({}));
    QElapsedTimer patience;
    patience.start();
    const QString lock = m_home.path() + QStringLiteral("/runtime/orvelle.lock");
    while (!QFile::exists(lock) && patience.elapsed() < 20'000)
        m_started.front()->waitForFinished(10);
    const Answer second = run({});
    EXPECT_EQ(second.code, 1);
    EXPECT_TRUE(second.err.contains("running already"));
    EXPECT_EQ(m_started.front()->state(), QProcess::Running);
}

TEST_F(Program, RefusesANewerDatabase)
{
    ASSERT_EQ(run(split("add https://e")).code, 0);
    // The format version is a big-endian number at byte 60 of an SQLite file.
    QFile file(m_home.path() + QStringLiteral("/config/orvelle/defaults.sqlite"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(60);
    file.write(QByteArray::fromHex("00000063"));
    file.close();
    const Answer answer = run({QStringLiteral("links")});
    EXPECT_EQ(answer.code, 1);
    EXPECT_TRUE(answer.err.contains("newer"));
}

} // namespace
} // namespace orvelle::test
