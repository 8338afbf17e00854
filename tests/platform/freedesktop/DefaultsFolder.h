#pragma once

#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/defaults/SqliteUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace orvelle::test {

/// A folder for settings that is gone after the test.
class DefaultsFolder
{
public:
    QString path() const { return m_parent.filePath(QStringLiteral("orvelle")); }
    QString file(const char *suffix = "") const
    {
        return path() + QStringLiteral("/defaults.sqlite") + QString::fromLatin1(suffix);
    }
    QString parent() const { return m_parent.path(); }

    QByteArray bytes(const char *suffix = "") const
    {
        QFile f(file(suffix));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    void put(const QByteArray &bytes, const char *suffix = "") const
    {
        QDir().mkpath(path());
        QFile f(file(suffix));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }

    auto tryOpen() { return SqliteUserDefaults::open(path(), m_clock); }

    /// The settings; the test ends when they cannot be opened.
    std::unique_ptr<SqliteUserDefaults> open()
    {
        auto result = tryOpen();
        if (!result)
            throw std::runtime_error(result.error().detail.toStdString());
        return std::move(std::move(result).value().defaults);
    }

    SystemClock &clock() { return m_clock; }

private:
    QTemporaryDir m_parent;
    SystemClock m_clock;
};

/// Another process that runs `work` and then dies without closing anything.
class ChildProcess
{
public:
    explicit ChildProcess(const std::function<void()> &work) : m_pid(::fork())
    {
        if (m_pid != 0)
            return;
        try {
            work();
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    ~ChildProcess() { wait(); }
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    void kill() { ::kill(m_pid, SIGKILL); }
    bool wait()
    {
        int status = 0;
        if (m_pid > 0)
            ::waitpid(std::exchange(m_pid, 0), &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

private:
    pid_t m_pid;
};

} // namespace orvelle::test
