#include "menubar/LinkOpener.h"

#include "base/AddressSchemes.h"
#include "base/Text.h"
#include "links/ImportMarks.h"
#include "links/LinkStore.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/FileBookmarks.h"
#include "platform/Workspace.h"

#include <QFutureWatcher>
#include <QLoggingCategory>
#include <QPointer>
#include <QPromise>
#include <QUrl>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcMenuBar, "MenuBarManager", QtInfoMsg)

constexpr std::chrono::milliseconds lastLooks{500};

QString reasonOf(const LocalProgram &program)
{
    switch (program.kind) {
    case ProgramKind::Executable:
        return text("openProgram.executable %@"_text, program.file);
    case ProgramKind::Script:
        return text("openProgram.script %@"_text, program.file);
    case ProgramKind::DesktopEntry:
        return text("openProgram.desktopEntry %@"_text, program.file);
    case ProgramKind::ProgramFile:
        return text("openProgram.programFile %@"_text, program.file);
    case ProgramKind::OnShare:
        return text("openProgram.onShare %@"_text, program.file);
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
    if (!caution)
        return;
    m_caution.emplace(*caution);
    m_looking.emplace(2, lastLooks); // one dead network disk must not stop the others
}

QString LinkOpener::targetOf(const LinkItem &item) const
{
    const bool onDisk = item.type == LinkType::File || item.type == LinkType::Folder;
    return onDisk ? m_links.securePath(item) : item.path.trimmed();
}

bool LinkOpener::open(const LinkItem &item)
{
    if (!m_caution || !mayLeadToFile(item))
        return openNow(item.type, targetOf(item));
    const QString target = targetOf(item);
    if (target.isEmpty() || !m_caution->marks.asksFor(item, target))
        return openNow(item.type, target);
    if (item.type == LinkType::Url && !isOpenable(QUrl(target, QUrl::TolerantMode)))
        return false;
    openWithCaution(item.type, item.name, target, [this, item, target] { m_caution->marks.allow(item, target); });
    return true;
}

bool LinkOpener::openAddress(const QUrl &url)
{
    if (!isOpenable(url))
        return false;
    const QString address = QString::fromLatin1(url.toEncoded());
    if (!m_caution || isRemoteScheme(url.scheme()))
        return openNow(LinkType::Url, address);
    openWithCaution(LinkType::Url, url.fileName(), address, [] {});
    return true;
}

std::optional<LocalProgram> LinkOpener::programToAskAbout(const LinkItem &item, const ImportMarks &marks) const
{
    const QString target = targetOf(item);
    if (!mayLeadToFile(item) || !marks.asksFor(item, target))
        return std::nullopt;
    return programBehind(item.type, target);
}

bool LinkOpener::openNow(LinkType type, const QString &target)
{
    switch (type) {
    case LinkType::File:
        return openAt(target, &Workspace::openFile);
    case LinkType::Folder:
        return openAt(target, &Workspace::showFolder);
    case LinkType::Url: {
        const QUrl url(target, QUrl::TolerantMode);
        return isOpenable(url) && m_workspace.openUrl(url);
    }
    case LinkType::Note:
    case LinkType::Group:
        return false;
    }
    Q_UNREACHABLE();
}

bool LinkOpener::openAt(const QString &path, bool (Workspace::*handOver)(const QString &))
{
    if (path.isEmpty())
        return false;
    FileBookmarks &bookmarks = m_links.fileBookmarks();
    const bool accessing = bookmarks.startAccess(path);
    const bool opened = (m_workspace.*handOver)(path);
    if (!opened)
        qCInfo(lcMenuBar, "A file or folder link could not be opened");
    if (accessing) {
        m_clock.after(accessKept, this, [this, path] { m_links.fileBookmarks().stopAccess(path); });
    }
    return opened;
}

/// Looks at the file first, on a thread, as its disk may be slow.
void LinkOpener::openWithCaution(LinkType type, const QString &name, const QString &target, const Step &allowed)
{
    using Found = std::optional<LocalProgram>;
    const auto promise = std::make_shared<QPromise<Found>>();
    auto *watcher = new QFutureWatcher<Found>(this);
    connect(watcher, &QFutureWatcher<Found>::finished, this, [this, watcher, type, name, target, allowed] {
        watcher->deleteLater();
        const Found program = watcher->result();
        if (!program) {
            openNow(type, target);
            return;
        }
        ask(name, *program, [this, type, target, allowed] {
            allowed();
            openNow(type, target);
        });
    });
    promise->start();
    watcher->setFuture(promise->future());
    m_looking->run([promise, type, target] {
        promise->addResult(programBehind(type, target));
        promise->finish();
    });
}

void LinkOpener::ask(const QString &name, const LocalProgram &program, const Step &allowed)
{
    qCInfo(lcMenuBar, "A link from elsewhere leads to a program; asking first");
    Alert alert;
    alert.style = Alert::Style::Warning;
    alert.message = text("openProgram.title %@"_text, name);
    alert.informativeText = reasonOf(program) + u"\n\n"_s + text("openProgram.message"_text);
    alert.buttons = {text("openProgram.open"_text), text("sheet.cancel"_text)};
    m_caution->alerts.show(alert, [self = QPointer<LinkOpener>(this), allowed](int button) {
        if (self && button == 0)
            allowed();
    });
}

} // namespace orvelle
