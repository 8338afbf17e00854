#pragma once

#include "desktop/tray_tools.h"
#include "platform/Pasteboard.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>
#include <optional>

namespace orvelle::test {

constexpr qint64 megabyte = 1024 * 1024;

/// Bytes that do not repeat soon.
inline QByteArray manyBytes(qint64 count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    for (qint64 i = 0; i < count; ++i)
        bytes[i] = char(i * 7 + i / 251);
    return bytes;
}

/// Another program that copies, and answers until it is ended.
class CopyingProgram
{
public:
    CopyingProgram(const QString &program, const QStringList &arguments, const QByteArray &content)
    {
        m_process.start(program, arguments);
        m_process.waitForStarted();
        m_process.write(content);
        m_process.closeWriteChannel();
    }
    ~CopyingProgram()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(CopyingProgram)
    /// From now on it answers nobody.
    void freeze() const { ::kill(pid_t(m_process.processId()), SIGSTOP); }

private:
    QProcess m_process;
};

/// What a program prints that pastes.
inline QByteArray printed(const QString &program, const QStringList &arguments, int milliseconds = 30'000)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(waitFor([&process] { return process.state() == QProcess::NotRunning; }, milliseconds));
    return process.readAllStandardOutput();
}

/// What a pasteboard answers, waited for.
class PasteboardReader
{
public:
    explicit PasteboardReader(Pasteboard &pasteboard) : m_pasteboard(pasteboard) {}

    bool changes(qint64 before) const
    {
        return waitFor([this, before] { return m_pasteboard.changeCount() > before; });
    }
    Result<QStringList, PasteboardError> types()
    {
        std::optional<Result<QStringList, PasteboardError>> answer;
        m_pasteboard.types(&m_context, [&answer](const auto &given) { answer = given; });
        EXPECT_FALSE(answer) << "not from inside the call";
        EXPECT_TRUE(waitFor([&answer] { return answer.has_value(); }));
        return answer.value_or(PasteboardError{});
    }
    Result<QByteArray, PasteboardError> data(const QString &type, qint64 most = 50 * megabyte)
    {
        std::optional<Result<QByteArray, PasteboardError>> answer;
        m_pasteboard.data(type, most, &m_context, [&answer](const auto &given) { answer = given; });
        EXPECT_TRUE(waitFor([&answer] { return answer.has_value(); }, 40'000));
        return answer.value_or(PasteboardError{});
    }

private:
    Pasteboard &m_pasteboard;
    QObject m_context;
};

} // namespace orvelle::test
