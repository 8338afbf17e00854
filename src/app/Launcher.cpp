#include "app/Launcher.h"

#include "app/Application.h"
#include "app/Display.h"
#include "app/LoneCommand.h"
#include "app/SessionBus.h"
#include "app/SessionBusWatch.h"
#include "app/cli/CommandInput.h"
#include "app/cli/CommandLine.h"
#include "base/Text.h"
#include "base/Translations.h"
#include "platform/freedesktop/wayland/LayerShell.h"
#include "ui/common/Icons.h"

#include <QApplication>
#include <QDir>
#include <QLockFile>
#include <QLoggingCategory>

#include <unistd.h>

#include <cstdio>

namespace orvelle {

namespace {

/// A start can lose the name to a process that is just ending; then it is the
/// next one's turn.
constexpr int startAttempts = 3;

/// What the application does once it runs, or is asked to do when it runs.
using FirstRequest = std::variant<PlainStart, OpenFiles, CommandCall>;

/// The toolkit's application, whose wishes to quit (a session's, a shortcut's)
/// are ours to decide.
class GuiApplication : public QApplication
{
public:
    using QApplication::QApplication;
    std::function<void()> quitRequested;

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::Quit || !quitRequested)
            return QApplication::event(event);
        quitRequested();
        return true;
    }
};

bool writeAll(FILE *stream, const QByteArray &bytes)
{
    const std::size_t size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

int finish(const CommandResult &result)
{
    writeAll(stderr, result.err);
    if (writeAll(stdout, result.out))
        return result.exitCode;
    writeAll(stderr, QByteArrayLiteral("orvelle: The output could not be written.\n"));
    return CommandResult::Refused;
}

/// The arguments as text; absent when one of them is not UTF-8.
std::optional<QStringList> decodedArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        const auto argument = decodedText(QByteArrayView(argv[i], qstrlen(argv[i])));
        if (!argument)
            return std::nullopt;
        arguments += *argument;
    }
    return arguments;
}

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("orvelle"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("orvelle.org"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.orvelle.Orvelle"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

CommandResult notRunning()
{
    return CommandResult::refused(QStringLiteral("Orvelle is not running."));
}

CommandResult stillRunning()
{
    return CommandResult::refused(
        QStringLiteral("Orvelle is still running; it asks before changes are lost that could not be saved."));
}

/// One run of the program.
class Launcher
{
public:
    Launcher(int &argc, char **argv)
        : m_argc(argc), m_argv(argv), m_hasBus(prepareSessionBus()), m_workingDirectory(QDir::currentPath())
    {
    }

    int run();
    /// The program to go on with, in place of this process; empty for none.
    const QByteArray &successor() const { return m_successor; }

private:
    int runCommand(const CommandCall &call);
    int runApplication(const FirstRequest &request);
    int becomeApplication(GuiApplication &app, Application *&running, const FirstRequest &first);
    int refuseToStart(GuiApplication &app, MessageAlerts &alerts, const DefaultsOpenError &error);
    std::optional<int> handOver(const RunningInstance &instance, const FirstRequest &request) const;
    int handOverWithoutDisplay(const FirstRequest &request);
    BusRequests busRequests(Application *&running) const;

    int &m_argc;
    char **m_argv;
    bool m_hasBus;
    QString m_workingDirectory;
    QStringList m_arguments;
    QByteArray m_successor;
};

int Launcher::run()
{
    nameApplication();
    const auto arguments = decodedArguments(m_argc, m_argv);
    if (!arguments)
        return finish(CommandResult::wrongUsage(QStringLiteral("An argument is not valid UTF-8.")));
    m_arguments = *arguments;
    ParsedCommandLine parsed = parseCommandLine(m_arguments, m_workingDirectory);
    if (const auto *answer = std::get_if<CommandResult>(&parsed))
        return finish(*answer);
    // Our own options mean nothing to the toolkit.
    m_argc = 1;
    if (auto *call = std::get_if<CommandCall>(&parsed)) {
        if (const auto refusal = readInput(*call))
            return finish(*refusal);
        if (call->command->readsInput)
            m_arguments = argumentsOf(*call);
        return runCommand(*call);
    }
    if (const auto *files = std::get_if<OpenFiles>(&parsed))
        return runApplication(*files);
    return runApplication(std::get<PlainStart>(parsed));
}

int Launcher::runCommand(const CommandCall &call)
{
    {
        QCoreApplication app(m_argc, m_argv);
        // A command says what went wrong itself, in one sentence.
        QLoggingCategory::setFilterRules(QStringLiteral("*.info=false"));
        installTranslations(app, QLocale::system());
        if (m_hasBus) {
            const RunningInstance instance(QDBusConnection::sessionBus());
            if (instance.exists()) {
                if (const auto result = instance.run(m_arguments, m_workingDirectory, call.command->onlyOnce)) {
                    const bool quits = qstrcmp(call.command->name, "quit") == 0;
                    if (quits && result->exitCode == CommandResult::Done && !instance.waitUntilGone())
                        return finish(stillRunning());
                    return finish(*result);
                }
            }
        }
        if (call.command->place == CommandPlace::RunningOnly)
            return finish(notRunning());
        if (call.command->place == CommandPlace::Anywhere)
            return finish(runLoneCommand(call, m_workingDirectory));
        // The toolkit holds back what arrives on the bus until the first event
        // loop runs, and forgets to let go with the application object.
        QCoreApplication::processEvents();
    }
    QLoggingCategory::setFilterRules(QString());
    return runApplication(call);
}

/// Absent when nobody answered.
std::optional<int> Launcher::handOver(const RunningInstance &instance, const FirstRequest &request) const
{
    if (std::holds_alternative<CommandCall>(request)) {
        const auto result = instance.run(m_arguments, m_workingDirectory);
        return result ? std::optional(finish(*result)) : std::nullopt;
    }
    if (const auto *start = std::get_if<PlainStart>(&request); start && start->atLogin)
        return CommandResult::Done;
    const auto *files = std::get_if<OpenFiles>(&request);
    const bool answered = files ? instance.open(files->paths) : instance.activate();
    return answered ? std::optional<int>(CommandResult::Done) : std::nullopt;
}

int Launcher::handOverWithoutDisplay(const FirstRequest &request)
{
    QCoreApplication app(m_argc, m_argv);
    if (m_hasBus) {
        const RunningInstance instance(QDBusConnection::sessionBus());
        if (instance.exists()) {
            if (const auto code = handOver(instance, request))
                return *code;
        }
    }
    return finish(CommandResult::refused(
        QStringLiteral("There is no display to show anything on (neither DISPLAY nor WAYLAND_DISPLAY leads to one).")));
}

BusRequests Launcher::busRequests(Application *&running) const
{
    // Before the application stands, only an alert about why it cannot is shown.
    BusRequests requests;
    requests.activate = [&running] {
        if (running)
            running->openSettings();
    };
    requests.open = [&running](const QStringList &paths) {
        if (running)
            running->openFiles(paths);
    };
    requests.action = [&running](const QString &name) {
        if (running)
            running->performAction(name);
    };
    requests.run = [&running](const QStringList &arguments, const QString &workingDirectory,
                              const CommandAnswer &answer) {
        if (running)
            running->runCommand(arguments, workingDirectory, answer);
        else
            answer(notRunning());
    };
    return requests;
}

int Launcher::runApplication(const FirstRequest &request)
{
    if (!displayReachable())
        return handOverWithoutDisplay(request);
    LayerShell::allowRolelessWindows();
    GuiApplication app(m_argc, m_argv);
    installTranslations(app, QLocale::system());
    QApplication::setWindowIcon(symbolIcon(QStringLiteral("link")));
    Application *running = nullptr;
    if (!m_hasBus) {
        const Folders folders = Folders::ofUser();
        makePrivate(folders);
        QDir().mkpath(folders.runtime);
        QLockFile lock(folders.runtime + QStringLiteral("/orvelle.lock"));
        lock.setStaleLockTime(0);
        if (!lock.tryLock(0) && lock.error() == QLockFile::LockFailedError)
            return finish(CommandResult::refused(
                QStringLiteral("Orvelle is running already, and without a session bus it cannot be reached.")));
        return becomeApplication(app, running, request);
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    for (int attempt = 0; attempt < startAttempts; ++attempt) {
        BusService service(bus, busRequests(running));
        if (service.acquireName())
            return becomeApplication(app, running, request);
        if (const auto code = handOver(RunningInstance(bus), request))
            return *code;
    }
    return finish(CommandResult::refused(QStringLiteral("Orvelle is running already, but does not answer.")));
}

int Launcher::refuseToStart(GuiApplication &app, MessageAlerts &alerts, const DefaultsOpenError &error)
{
    const QString sentence = openErrorText(error);
    writeAll(stderr, CommandResult::refused(sentence).err);
    Alert alert;
    alert.style = Alert::Style::Critical;
    alert.message = text("error.openTitle"_text);
    alert.informativeText = sentence;
    alert.buttons = {text("sheet.ok"_text)};
    alerts.show(alert, [](int) { QCoreApplication::exit(CommandResult::Refused); });
    return app.exec();
}

int Launcher::becomeApplication(GuiApplication &app, Application *&running, const FirstRequest &first)
{
    const JournalLog log;
    SystemClock clock;
    MessageAlerts alerts;
    const Folders folders = Folders::ofUser();
    makePrivate(folders);
    auto opened = SqliteUserDefaults::open(folders.config, clock);
    if (!opened)
        return refuseToStart(app, alerts, opened.error());
    Application application({clock, log, alerts, m_hasBus ? QDBusConnection::sessionBus() : QDBusConnection(QString())},
                            folders, std::move(opened).value());
    running = &application;
    // Nothing that is connected to the former bus serves on another.
    const SessionBusWatch busWatch(m_hasBus ? QDBusConnection::sessionBus() : QDBusConnection(QString()), clock);
    QObject::connect(&busWatch, &SessionBusWatch::busIsAnother, &application, [this, &application] {
        if (application.endUnnoticed())
            m_successor = QFile::encodeName(QCoreApplication::applicationFilePath());
    });
    app.quitRequested = [&application] { application.requestQuit(); };
    application.start();
    if (const auto *files = std::get_if<OpenFiles>(&first))
        application.openFiles(files->paths);
    else if (std::holds_alternative<CommandCall>(first))
        application.runCommand(m_arguments, m_workingDirectory, [](const CommandResult &result) { finish(result); });
    const int code = app.exec();
    app.quitRequested = nullptr;
    running = nullptr;
    return code;
}

/// Goes on as another program with nothing of this one's; returns only when
/// that is not possible.
void becomeProgram(const QByteArray &path)
{
    constexpr unsigned firstOwn = STDERR_FILENO + 1;
    ::close_range(firstOwn, ~0U, CLOSE_RANGE_CLOEXEC);
    // The second is what runs now, where an update has taken the file away.
    for (const char *file : {path.constData(), "/proc/self/exe"})
        ::execl(file, path.constData(), "--login", static_cast<char *>(nullptr));
    std::perror("orvelle: The program cannot be started again");
}

} // namespace

int launch(int argc, char **argv)
{
    Launcher launcher(argc, argv);
    const int code = launcher.run();
    if (!launcher.successor().isEmpty())
        becomeProgram(launcher.successor());
    return code;
}

} // namespace orvelle
