#pragma once

#include <QMutex>
#include <QStringList>
#include <QtGlobal>

namespace orvelle::test {

/// Collects every log line, as "Area: text", while it lives, of all threads. One
/// at a time.
class LogCapture
{
public:
    LogCapture()
    {
        s_lines.clear();
        m_previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &message) {
            const QMutexLocker locker(&s_mutex);
            s_lines += QString::fromLatin1(context.category) + QStringLiteral(": ") + message;
        });
    }
    ~LogCapture() { qInstallMessageHandler(m_previous); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    QStringList lines() const
    {
        const QMutexLocker locker(&s_mutex);
        return s_lines;
    }
    bool contains(const QString &line) const { return lines().contains(line); }

private:
    static inline QMutex s_mutex;
    static inline QStringList s_lines;
    QtMessageHandler m_previous = nullptr;
};

} // namespace orvelle::test
