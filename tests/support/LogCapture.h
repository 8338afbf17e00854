#pragma once

#include <QStringList>
#include <QtGlobal>

namespace orvelle::test {

/// Collects every log line, as "Area: text", while it lives. One at a time.
class LogCapture
{
public:
    LogCapture()
    {
        s_lines.clear();
        m_previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &message) {
            s_lines += QString::fromLatin1(context.category) + QStringLiteral(": ") + message;
        });
    }
    ~LogCapture() { qInstallMessageHandler(m_previous); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    QStringList lines() const { return s_lines; }
    bool contains(const QString &line) const { return s_lines.contains(line); }

private:
    static inline QStringList s_lines;
    QtMessageHandler m_previous = nullptr;
};

} // namespace orvelle::test
