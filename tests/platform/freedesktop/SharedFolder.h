#pragma once

#include "platform/freedesktop/folder/FolderFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

namespace orvelle::test {

/// A folder that machines share, gone after the test.
class SharedFolder
{
public:
    SharedFolder() { QDir().mkpath(path()); }

    QString path() const { return m_parent.filePath(QStringLiteral("shared")); }
    QString file(const QString &name) const { return path() + u'/' + name; }
    QString parent() const { return m_parent.path(); }

    /// As a sync client does: another file in its place.
    void put(const QString &name, const QByteArray &bytes) const
    {
        const QString beside = file(QStringLiteral(".client.tmp"));
        {
            QFile written(beside);
            ASSERT_TRUE(written.open(QIODevice::WriteOnly));
            ASSERT_EQ(written.write(bytes), bytes.size());
        }
        ASSERT_EQ(::rename(QFile::encodeName(beside).constData(), QFile::encodeName(file(name)).constData()), 0);
    }
    QByteArray get(const QString &name) const
    {
        QFile read(file(name));
        return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
    }
    /// Everything in it, also what is hidden.
    QStringList names() const
    {
        return QDir(path()).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    QTemporaryDir m_parent;
};

/// Time that passes by waiting, and what others do meanwhile.
class FakeWorkerTime : public WorkerTime
{
public:
    std::chrono::milliseconds now() const override
    {
        if (whenAsked)
            whenAsked();
        return m_now;
    }
    bool pause(std::chrono::milliseconds time) override
    {
        m_now += time;
        ++pauses;
        if (whilePausing)
            whilePausing();
        return true;
    }
    void advance(std::chrono::milliseconds time) { m_now += time; }

    std::function<void()> whilePausing;
    std::function<void()> whenAsked;
    int pauses = 0;

private:
    std::chrono::milliseconds m_now{1'000'000};
};

/// Real time, for threads and processes of the tests.
class RealWorkerTime : public WorkerTime
{
public:
    std::chrono::milliseconds now() const override
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    }
    bool pause(std::chrono::milliseconds time) override
    {
        std::this_thread::sleep_for(time);
        return true;
    }
};

} // namespace orvelle::test
