#pragma once

#include "links/LinkItem.h"
#include "links/LocalPrograms.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <optional>

namespace orvelle {

class Alerts;
class Clock;
class FileBookmarks;
class ImportMarks;
class LinkStore;
class Workspace;

/// Opens the things behind links. Main thread.
class LinkOpener : public QObject
{
    Q_OBJECT

public:
    /// How long access to a file is kept for its handler to start.
    static constexpr std::chrono::milliseconds accessKept{1000};
    /// How long what is behind a link may take to answer. What is found later is
    /// not opened, as nobody waits for it any more.
    static constexpr std::chrono::seconds patience{20};

    /// Knows which links came from elsewhere, and how to ask about them.
    struct Caution {
        ImportMarks &marks;
        Alerts &alerts;
    };

    /// With `caution` it asks before a link that came from elsewhere opens a
    /// program.
    LinkOpener(LinkStore &links, Workspace &workspace, Clock &clock, const std::optional<Caution> &caution = {},
               QObject *parent = nullptr);

    /// Hands a file to its application, a folder to the file manager, an
    /// address to the handler of its scheme. False when it leads nowhere, and
    /// for notes and groups, which are not opened this way. True also when the
    /// user is asked first, and when nobody knows yet because the file lies on a
    /// distant volume.
    bool open(const LinkItem &item);

    /// An address from the text of a note or of an event: when it leads to a
    /// program, that is asked about each time. False when it leads nowhere.
    bool openAddress(const QUrl &url);

    /// The program that open() would ask about, found at once and without
    /// asking. May wait for a disk.
    std::optional<LocalProgram> programToAskAbout(const LinkItem &item, const ImportMarks &marks) const;

private:
    using Step = std::function<void()>;
    /// On a thread when the volume is distant; what it returns goes on with the
    /// opening and says whether that succeeded.
    using Look = std::function<std::function<bool()>(FileBookmarks &)>;

    bool lookFirst(const QString &path, const Look &look);
    QString distantPathOf(LinkType type, const QString &target) const;
    bool openOrAsk(const LinkItem &item, const QString &target);
    bool openNow(LinkType type, const QString &target);
    bool openUrl(const QString &address);
    bool openAt(const QString &path, bool (Workspace::*handOver)(const QString &));
    bool openWithCaution(LinkType type, const QString &name, const QString &target, const Step &allowed);
    void ask(const QString &name, const LocalProgram &program, const Step &allowed);

    LinkStore &m_links;
    Workspace &m_workspace;
    Clock &m_clock;
    std::optional<Caution> m_caution;
};

/// Why a command that cannot ask does not open what is behind the link.
QString askFirstText(const LocalProgram &program);

} // namespace orvelle
