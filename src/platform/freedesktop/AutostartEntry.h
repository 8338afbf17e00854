#pragma once

#include "base/Result.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

using GKeyFile = struct _GKeyFile;

namespace orvelle {

/// One desktop entry of an autostart folder, with all its keys and comments.
class AutostartEntry
{
public:
    /// The error in the system's words.
    static Result<AutostartEntry, QString> read(const QString &path);
    /// As Orvelle writes it for the first time.
    static AutostartEntry fresh(const QString &program);

    /// Whether a desktop of these names would start it.
    bool startsIn(const QStringList &currentDesktop) const;
    /// Takes away what keeps it from being started in this desktop.
    void enable(const QStringList &currentDesktop);
    void hide();

    /// Whether its command leads nowhere, or to an Orvelle other than `program`.
    bool leadsElsewhere(const QString &program) const;
    /// Arguments stay where they were meant for an Orvelle.
    void lead(const QString &program);

    /// Whether only Orvelle has ever written into it.
    bool isUnedited() const;

    /// Atomic and durable, readable by its owner only; makes the folder. A
    /// symbolic link goes on being one. Absent when it worked.
    [[nodiscard]] std::optional<QString> write(const QString &path) const;

private:
    struct Free {
        void operator()(GKeyFile *file) const;
    };
    using KeyFile = std::unique_ptr<GKeyFile, Free>;

    explicit AutostartEntry(KeyFile file) : m_file(std::move(file)) {}
    QString text(const char *key) const;
    QStringList list(const char *key) const;
    void setList(const char *key, const QStringList &values);
    bool flag(const char *key, bool fallback) const;
    QStringList command() const;
    QByteArray bytes() const;

    KeyFile m_file;
};

} // namespace orvelle
