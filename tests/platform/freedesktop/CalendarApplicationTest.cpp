#include "platform/freedesktop/calendars/GioCalendarApplication.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

void write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    EXPECT_TRUE(file.open(QFile::WriteOnly));
    file.write(bytes);
}

/// Opens in a process of its own, this program once more, as GIO looks once
/// where applications are.
TEST(CalendarApplication, IsTheHandlerOfCalendars)
{
    constexpr char isOther[] = "ORVELLE_TEST_OPENS";
    if (qEnvironmentVariableIsSet(isOther))
        return GioCalendarApplication().open();
    struct {
        QByteArray handlers;
        QByteArray opened;
    } const cases[] = {
        {"text/calendar=files.desktop\n", "files"},
        {"text/calendar=files.desktop\nx-scheme-handler/webcal=addresses.desktop\n", "addresses"},
        {"x-scheme-handler/webcal=gone.desktop\ntext/calendar=files.desktop\n", "files"},
        {"", ""},
    };
    for (const auto &each : cases) {
        const QTemporaryDir folder;
        const QString opened = folder.filePath(u"opened"_s);
        for (const QByteArray name : {"files", "addresses"})
            write(folder.filePath(u"data/applications/"_s + QString::fromLatin1(name) + u".desktop"_s),
                  "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=sh -c \"printf " + name + " > " +
                      opened.toUtf8() + ".new; mv " + opened.toUtf8() + ".new " + opened.toUtf8() + "\" %U\n");
        write(folder.filePath(u"config/mimeapps.list"_s), "[Default Applications]\n" + each.handlers);
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, folder.filePath(u"data"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, folder.filePath(u"config"_s));
        environment.insert(u"XDG_DATA_DIRS"_s, folder.filePath(u"none"_s));
        environment.insert(u"XDG_CONFIG_DIRS"_s, folder.filePath(u"none"_s));
        environment.insert(QString::fromLatin1(isOther), u"1"_s);
        program.setProcessEnvironment(environment);
        program.start(QCoreApplication::applicationFilePath(), {u"--gtest_filter=CalendarApplication.*"_s});
        ASSERT_TRUE(program.waitForFinished());
        QDeadlineTimer deadline(each.opened.isEmpty() ? 0 : 10'000);
        while (!QFile::exists(opened) && !deadline.hasExpired())
            QThread::msleep(5); // the application is a process of its own
        QFile file(opened);
        EXPECT_EQ(file.open(QFile::ReadOnly), !each.opened.isEmpty());
        EXPECT_EQ(file.isOpen() ? file.readAll() : QByteArray(), each.opened);
        const bool says = program.readAllStandardError().contains("No application for calendars is installed");
        EXPECT_EQ(says, each.opened.isEmpty());
    }
}

} // namespace
} // namespace orvelle::test
