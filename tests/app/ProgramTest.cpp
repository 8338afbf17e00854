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
        // Nothing that a test adds is asked of the real network.
        m_environment.insert(QStringLiteral("https_proxy"), QStringLiteral("http://127.0.0.1:9"));
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

    /// At the same place each time, which says nothing of which bus it is, as
    /// in a login.
    void startBus()
    {
        const QString address = QStringLiteral("unix:path=") + m_environment.value(QStringLiteral("XDG_RUNTIME_DIR")) +
                                QStringLiteral("/bus");
        m_bus = std::make_unique<QProcess>();
        m_bus->setProcessEnvironment(m_environment);
        m_bus->start(QStringLiteral("dbus-daemon"),
                     {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--address=") + address,
                      QStringLiteral("--print-address=1")});
        ASSERT_TRUE(m_bus->waitForReadyRead(10'000));
        m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
    }
    void killBus()
    {
        m_bus->kill();
        m_bus->waitForFinished();
        QFile::remove(m_environment.value(QStringLiteral("XDG_RUNTIME_DIR")) + QStringLiteral("/bus"));
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

TEST_F(Program, IsBackOnAnotherSessionBus)
{
    startBus();
    // With these no window opens at the start.
    ASSERT_EQ(run(split("defaults write HasLaunchedBefore bool true")).code, 0);
    ASSERT_EQ(run(split("add http://before.invalid/")).code, 0);
    startApplication();
    ASSERT_EQ(run({QStringLiteral("toggle")}).code, 0) << "the menu is shut again";
    killBus();
    ASSERT_EQ(run(split("add http://meanwhile.invalid/")).code, 0);
    startBus();
    QElapsedTimer patience;
    patience.start();
    while (run({QStringLiteral("toggle")}).code != 0)
        ASSERT_LT(patience.elapsed(), 40'000) << "nobody answers on the new bus";
    EXPECT_FALSE(m_started.back()->waitForFinished(0)) << "it is still the same process";
    const QByteArray links = run(split("links")).out;
    EXPECT_TRUE(links.contains("before.invalid") && links.contains("meanwhile.invalid")) << links.toStdString();
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
        {"move nobody", 2},
        {"move nobody --to root --at -1", 2},
        {"move nobody --to root --at x", 2},
        {"move nobody --to root", 1},
        {"indent nobody", 1},
        {"outdent nobody", 1},
        {"sort nobody", 1},
        {"remove nobody", 1},
        {"update nobody", 2},
        {"update nobody --name x", 1},
        {"update nobody --size 3", 2},
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
    ASSERT_EQ(menu.size(), 4);
    EXPECT_EQ(menu.at(0)[u"title"].toString(), u"example.org");
    EXPECT_EQ(menu.at(2)[u"widget"].toString(), u"quickLaunch") << "on unless it was turned off";
    EXPECT_EQ(menu.at(3)[u"kind"].toString(), u"bottomRow");

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

/// Stored links a, k and a group of c and B, as JSON.
QByteArray treeOfFour()
{
    const auto node = [](const char *name, const char *type, const QByteArray &more = {}) {
        return QByteArray("{\"name\":\"") + name + R"(","path":"https://e","type":")" + type + R"(","stableId":"id-)" +
               name + "\"" + more + "}";
    };
    return '[' + node("a", "url") + ',' + node("k", "url") + ',' +
           node("f", "group", ",\"children\":[" + node("c", "url") + ',' + node("B", "url") + ']') + ',' +
           node("g", "group", ",\"children\":[]") + ']';
}

TEST_F(Program, EditsTheTree)
{
    const auto outline = [this] {
        QByteArray names;
        for (const QByteArray &line : run({QStringLiteral("links")}).out.trimmed().split('\n'))
            names += line.mid(line.indexOf("  ") + 2).replace("  https://e", "").replace("  ", ">") + ' ';
        return names.trimmed();
    };
    ASSERT_EQ(run({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("orvelle_savedLinks"),
                   QStringLiteral("data"), QString::fromLatin1(treeOfFour().toBase64())})
                  .code,
              0);
    struct Case {
        const char *line;
        const char *after; ///< null: refused
        const char *says;
    };
    const Case cases[] = {
        {"sort id-f", "a k f/ >B >c g/", ""},
        {"move id-a --to id-f --at 1", "k f/ >B >a >c g/", ""},
        {"move id-a --to root --at 0", "a k f/ >B >c g/", ""},
        {"move id-f --to id-f", nullptr,
         "Déplacement refusé: impossible de déplacer un groupe dans ses propres enfants"},
        {"move id-a --to id-k", nullptr, "no group"},
        {"indent id-g", "a k f/ >B >c >g/", ""},
        {"indent id-a", nullptr, "no group right above"},
        {"outdent id-a", nullptr, "not in a group"},
        {"sort id-g", nullptr, "nothing to sort"},
        {"move id-k --to ID-G", "a f/ >B >c >g/ >>k", ""},
        {"outdent id-k", "a f/ >B >c >g/ >k", ""},
        {"update id-k --name new --color red --icon star.fill", "a f/ >B >c >g/ >new", ""},
        {"update id-k --name x --color crimson", nullptr, "no colour"},
        {"update id-k --name x --icon nonsense", nullptr, "no icon"},
        {"update id-k --path gopher://x", nullptr, "no address"},
        {"update id-k --name=", nullptr, "cannot be empty"},
        {"update id-f --path /tmp", nullptr, "lead nowhere"},
        {"remove id-f", "a", ""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.line);
        const QByteArray before = outline();
        const Answer answer = run(split(c.line));
        EXPECT_EQ(answer.code, c.after ? 0 : 1);
        EXPECT_EQ(outline(), c.after ? QByteArray(c.after) : before);
        EXPECT_TRUE(answer.err.contains(c.says)) << answer.err.toStdString();
        EXPECT_EQ(answer.err.isEmpty(), c.after != nullptr);
    }
    EXPECT_EQ(run({QStringLiteral("undo")}).code, 0);
    const QByteArray stored = run(split("links --json")).out;
    EXPECT_TRUE(stored.contains(R"("customIconName":"star.fill","customIconColor":"red")"));
    EXPECT_EQ(run(split("update id-k --color= --icon=")).code, 0);
    EXPECT_FALSE(run(split("links --json")).out.contains("customIcon"));
    EXPECT_EQ(run({QStringLiteral("update"), QStringLiteral("id-k"), QStringLiteral("--path"), m_home.path()}).code, 0);
    EXPECT_TRUE(run(split("links --json")).out.contains(R"(,"type":"folder","bookmarkData":")"));
}

TEST_F(Program, RefusesAMoveBelowTheThirdLevel)
{
    const QByteArray tree =
        R"([{"name":"1","path":"","type":"group","stableId":"1","children":[{"name":"2","path":"","type":"group",)"
        R"("stableId":"2","children":[{"name":"3","path":"","type":"group","stableId":"3","children":[]},)"
        R"({"name":"a","path":"https://e","type":"url","stableId":"a"}]}]}])";
    ASSERT_EQ(run({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("orvelle_savedLinks"),
                   QStringLiteral("data"), QString::fromLatin1(tree.toBase64())})
                  .code,
              0);
    const QByteArray before = run(split("links --json")).out;
    for (const char *line : {"move a --to 3", "indent a"}) {
        const Answer answer = run(split(line));
        EXPECT_EQ(answer.code, 1);
        EXPECT_EQ(answer.err, "orvelle: Déplacement refusé: profondeur maximale atteinte (3 niveaux)\n");
    }
    EXPECT_EQ(run(split("links --json")).out, before);
}

TEST_F(Program, ReadsAValueFromStandardInput)
{
    const auto write = [this](const QString &type, const QByteArray &input) {
        const auto process = start(
            {QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("K"), type, QStringLiteral("-")});
        process->write(input);
        process->closeWriteChannel();
        return process->waitForFinished(60'000) ? process->exitCode() : -1;
    };
    const QByteArray large(3'000'000, 'x');
    const auto session = [&] {
        for (const QByteArray &text : {large, QByteArray("--help"), QByteArray("-"), QByteArray("é\n"), QByteArray()}) {
            EXPECT_EQ(write(QStringLiteral("string"), text + '\n'), 0);
            EXPECT_EQ(run(split("defaults read K")).out, text + '\n');
        }
        EXPECT_EQ(write(QStringLiteral("int"), "7"), 0);
        EXPECT_EQ(write(QStringLiteral("int"), "x"), 1);
        EXPECT_EQ(write(QStringLiteral("string"), "\xff"), 1);
        EXPECT_EQ(write(QStringLiteral("string"), QByteArray("a\0b", 3)), 1);
        EXPECT_EQ(run(split("defaults read K")).out, "7\n");
    };
    session();
    startBus();
    startApplication();
    session();
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
