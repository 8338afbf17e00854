#include "menubar/LinkOpener.h"

#include "base/AddressSchemes.h"
#include "base/DisplayTitle.h"
#include "base/Text.h"
#include "links/BookmarkMaintenance.h"
#include "links/LinkStore.h"
#include "links/exchange/ImportMarks.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/FileBookmarks.h"
#include "platform/Volumes.h"
#include "platform/Workspace.h"

#include <QLoggingCategory>
#include <QPointer>
#include <QUrl>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcMenuBar, "MenuBarManager", QtInfoMsg)

/// Of a name in the question whether to open it.
constexpr qsizetype longestName = 120;

QString reasonOf(const LocalProgram &program)
{
    const QString file = displayTitle(program.file);
    switch (program.kind) {
    case ProgramKind::Executable:
        return text("openProgram.executable %@"_text, file);
    case ProgramKind::Script:
        return text("openProgram.script %@"_text, file);
    case ProgramKind::DesktopEntry:
        return text("openProgram.desktopEntry %@"_text, file);
    case ProgramKind::ProgramFile:
        return text("openProgram.programFile %@"_text, file);
    case ProgramKind::OnShare:
        return text("openProgram.onShare %@"_text, file);
    }
    Q_UNREACHABLE();
}

bool isOpenable(const QUrl &url)
{
    return url.isValid() && !url.scheme().isEmpty() && !isCodeScheme(url.scheme());
}

} // namespace

QString askFirstText(const LocalProgram &program)
{
    return reasonOf(program) + u' ' + text("openProgram.askFirst"_text);
}

LinkOpener::LinkOpener(LinkStore &links, Workspace &workspace, Clock &clock, const std::optional<Caution> &caution,
                       QObject *parent)
    : QObject(parent), m_links(links), m_workspace(workspace), m_clock(clock)
{
    if (caution)
        m_caution.emplace(*caution);
}

bool LinkOpener::open(const LinkItem &item)
{
    if (!isOnDisk(item))
        return openOrAsk(item, item.path.trimmed());
    return lookFirst(item.path, [this, item](FileBookmarks &bookmarks) {
        return [this, item, target = securePath(item, bookmarks)] { return openOrAsk(item, target); };
    });
}

bool LinkOpener::openOrAsk(const LinkItem &item, const QString &target)
{
    if (!m_caution || !mayLeadToFile(item) || target.isEmpty() || !m_caution->marks.asksFor(item, target))
        return openNow(item.type, target);
    if (item.type == LinkType::Url && !isOpenable(QUrl(target, QUrl::TolerantMode)))
        return false;
    return openWithCaution(item.type, item.name, target,
                           [this, item, target] { m_caution->marks.allow(item, target); });
}

bool LinkOpener::openAddress(const QUrl &url)
{
    if (!isOpenable(url))
        return false;
    const QString address = QString::fromLatin1(url.toEncoded());
    if (!m_caution || isRemoteScheme(url.scheme()))
        return openNow(LinkType::Url, address);
    return openWithCaution(LinkType::Url, url.fileName(), address, [] {});
}

std::optional<LocalProgram> LinkOpener::programToAskAbout(const LinkItem &item, const ImportMarks &marks) const
{
    const QString target = isOnDisk(item) ? securePath(item, m_links.fileBookmarks()) : item.path.trimmed();
    if (!mayLeadToFile(item) || !marks.asksFor(item, target))
        return std::nullopt;
    return programBehind(item.type, target);
}

/// Goes on when `look` has an answer, which is before this returns unless the
/// path is distant.
bool LinkOpener::lookFirst(const QString &path, const Look &look)
{
    struct Wait {
        bool over = false;
        bool opened = true;
    };
    const auto wait = std::make_shared<Wait>();
    m_links.look(path, this, [wait, look](FileBookmarks &bookmarks) -> DistantFiles::Delivery {
        return [wait, goOn = look(bookmarks)] {
            if (!std::exchange(wait->over, true))
                wait->opened = goOn();
        };
    });
    if (!wait->over) {
        m_clock.after(patience, this, [wait] {
            if (!std::exchange(wait->over, true))
                qCInfo(lcMenuBar, "A link could not be opened: its volume does not answer");
        });
    }
    return wait->opened;
}

/// Where those who open the target could hang; empty when it is at hand.
QString LinkOpener::distantPathOf(LinkType type, const QString &target) const
{
    for (const QString &path : type == LinkType::Url ? localPathsOf(target) : QStringList(target)) {
        if (!m_links.volumes().distantVolumeHolding(path).isEmpty())
            return path;
    }
    return {};
}

bool LinkOpener::openNow(LinkType type, const QString &target)
{
    switch (type) {
    case LinkType::File:
        return openAt(target, &Workspace::openFile);
    case LinkType::Folder:
        return openAt(target, &Workspace::showFolder);
    case LinkType::Url:
        return openUrl(target);
    case LinkType::Note:
    case LinkType::Group:
        return false;
    }
    Q_UNREACHABLE();
}

bool LinkOpener::openUrl(const QString &address)
{
    const QUrl url(address, QUrl::TolerantMode);
    if (!isOpenable(url))
        return false;
    const QString distant = distantPathOf(LinkType::Url, address);
    if (distant.isEmpty())
        return m_workspace.openUrl(url);
    // The workspace opens a few at a time, which dead volumes must not use up:
    // it is not given what does not answer.
    return lookFirst(distant, [this, url, distant](FileBookmarks &bookmarks) {
        bookmarks.startAccess(distant);
        return [this, url] { return m_workspace.openUrl(url); };
    });
}

bool LinkOpener::openAt(const QString &path, bool (Workspace::*handOver)(const QString &))
{
    if (path.isEmpty())
        return false;
    return lookFirst(path, [this, path, handOver](FileBookmarks &bookmarks) {
        return [this, path, handOver, accessing = bookmarks.startAccess(path)] {
            const bool opened = (m_workspace.*handOver)(path);
            if (!opened)
                qCInfo(lcMenuBar, "A file or folder link could not be opened");
            if (accessing)
                m_clock.after(accessKept, this, [this, path] { m_links.fileBookmarks().stopAccess(path); });
            return opened;
        };
    });
}

bool LinkOpener::openWithCaution(LinkType type, const QString &name, const QString &target, const Step &allowed)
{
    return lookFirst(distantPathOf(type, target), [=, this](FileBookmarks &) {
        return [=, this, program = programBehind(type, target)] {
            if (!program)
                return openNow(type, target);
            ask(name, *program, [=, this] {
                allowed();
                openNow(type, target);
            });
            return true;
        };
    });
}

void LinkOpener::ask(const QString &name, const LocalProgram &program, const Step &allowed)
{
    qCInfo(lcMenuBar, "A link from elsewhere leads to a program; asking first");
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = text("openProgram.title %@"_text, displayTitle(name, longestName));
    alert.informativeText = reasonOf(program) + u"\n\n"_s + text("openProgram.message"_text);
    alert.buttons = {text("openProgram.open"_text), text("sheet.cancel"_text)};
    alert.defaultButton = 1;
    m_caution->alerts.show(alert, [self = QPointer<LinkOpener>(this), allowed](int button) {
        if (self && button == 0)
            allowed();
    });
}

} // namespace orvelle
