#pragma once

#include <QString>

#include <functional>

class QFileDialog;
class QWidget;

namespace orvelle {

class Clock;
class UserDefaults;
class Volumes;

/// The desktop's file dialogs for documents that come and go. They open in the
/// folder where the last one was, unless that may hang; each returns at once and calls `chosen` with
/// an absolute path, or not at all.
class ExchangeFiles
{
public:
    using Chosen = std::function<void(const QString &path)>;
    enum class Kind { Document, Bookmarks, LinkFolder };

    ExchangeFiles(UserDefaults &defaults, Clock &clock, const Volumes &volumes)
        : m_defaults(defaults), m_clock(clock), m_volumes(volumes)
    {
    }

    void askWhatToOpen(Kind kind, QWidget *parent, const Chosen &chosen);
    /// Offers a name with today's date: "Orvelle 2026-11-21.ovexport".
    void askWhereToSave(Kind kind, QWidget *parent, const Chosen &chosen);

    static QString lastFolderKey() { return QStringLiteral("ExchangeLastFolder"); }

private:
    QString lastFolder() const;
    void show(QFileDialog *dialog, const Chosen &chosen);

    UserDefaults &m_defaults;
    Clock &m_clock;
    const Volumes &m_volumes;
};

} // namespace orvelle
