#include "ui/exchange/ExchangeController.h"

#include "base/Text.h"
#include "links/LinkCodec.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "links/exchange/BookmarksHtml.h"
#include "links/exchange/ExchangeFile.h"
#include "links/exchange/ExchangeSettings.h"
#include "links/exchange/LinkFiles.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "ui/exchange/BackgroundWork.h"
#include "ui/exchange/ImportDialog.h"
#include "ui/exchange/ImportReport.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcExchange, "Exchange", QtInfoMsg)

QString titleOfFile(const QString &path)
{
    return QFileInfo(path).completeBaseName();
}

/// The settings that travel, as they are now.
ExportData settingsNow(const ExchangeSettings &settings)
{
    ExportData document;
    settings.gather(document);
    document.settingsModifiedAt.reset();
    return document;
}

} // namespace

ExchangeController::ExchangeController(const Services &services, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_files(services.defaults, services.clock, services.links.volumes()),
      m_fileSync({services.links, services.alerts, services.clock})
{
}

void ExchangeController::exportDocument(QWidget *parent)
{
    m_files.askWhereToSave(ExchangeFiles::Kind::Document, parent, [this, window = Window(parent)](const QString &path) {
        const QByteArray bytes = m_services.exchange.exportJSON().bytes;
        const qint64 count = countAll(m_services.links.links());
        writeInBackground(
            path, window, [bytes] { return bytes; },
            [this, path, count] { m_services.alerts.show(exportAlert(QFileInfo(path).fileName(), count, 0)); });
    });
}

void ExchangeController::exportBookmarks(QWidget *parent)
{
    m_files.askWhereToSave(
        ExchangeFiles::Kind::Bookmarks, parent, [this, window = Window(parent)](const QString &path) {
            const auto written = std::make_shared<WrittenBookmarks>();
            const auto make = [written, links = m_services.links.links(), title = titleOfFile(path)] {
                *written = writeBookmarksHtml(links, title);
                return written->html;
            };
            writeInBackground(path, window, make, [this, path, written] {
                m_services.alerts.show(exportAlert(QFileInfo(path).fileName(), written->links, written->notesLeftOut));
            });
        });
}

void ExchangeController::writeInBackground(const QString &path, QWidget *parent,
                                           const std::function<QByteArray()> &make,
                                           const std::function<void()> &written)
{
    const auto work = [this, path, make, written](WorkProgress &progress) -> BackgroundWork::Finish {
        const QByteArray bytes = make();
        if (progress.cancelled)
            return {};
        const auto error = writePrivateFile(path, bytes);
        if (!error)
            return written;
        return [this, error] { fail(text("export.title"_text), text("error.export %@"_text, error->sentence)); };
    };
    BackgroundWork::start(this, parent, m_services.clock, text("export.working"_text), work);
}

void ExchangeController::importDocument(QWidget *parent)
{
    m_files.askWhatToOpen(ExchangeFiles::Kind::Document, parent,
                          [this, window = Window(parent)](const QString &path) { openDocument(path, window); });
}

void ExchangeController::importBookmarks(QWidget *parent)
{
    m_files.askWhatToOpen(ExchangeFiles::Kind::Bookmarks, parent,
                          [this, window = Window(parent)](const QString &path) { openBookmarks(path, window); });
}

void ExchangeController::importLinkFolder(QWidget *parent)
{
    m_files.askWhatToOpen(ExchangeFiles::Kind::LinkFolder, parent,
                          [this, window = Window(parent)](const QString &path) { openLinkFolder(path, window); });
}

void ExchangeController::openDropped(const QStringList &paths, QWidget *parent,
                                     const std::function<void(const QStringList &)> &rest)
{
    const auto work = [this, paths, window = Window(parent), rest](WorkProgress &) -> BackgroundWork::Finish {
        DroppedKinds kinds;
        for (const QString &path : paths)
            kinds.insert(path, droppedKind(path));
        return [this, paths, kinds, window, rest] {
            if (const QStringList others = open(paths, kinds, window); !others.isEmpty())
                rest(others);
        };
    };
    BackgroundWork::start(this, parent, m_services.clock, text("import.working"_text), work);
}

/// Answers with those that are nothing of ours.
QStringList ExchangeController::open(const QStringList &paths, const DroppedKinds &kinds, QWidget *parent)
{
    QStringList linkFiles;
    QStringList others;
    for (const QString &path : paths) {
        const DroppedKind kind = kinds.value(path);
        if (kind == DroppedKind::Document)
            openDocument(path, parent);
        else if (kind == DroppedKind::Bookmarks)
            openBookmarks(path, parent);
        else if (kind == DroppedKind::LinkFolder)
            openLinkFolder(path, parent);
        else if (kind == DroppedKind::LinkFile)
            linkFiles += path;
        else
            others += path;
    }
    // Several files dropped together are one import, and one step back.
    if (!linkFiles.isEmpty())
        openLinkFiles(linkFiles, parent);
    return others;
}

void ExchangeController::openDocument(const QString &path, QWidget *parent)
{
    const auto read = [path] { return readExchangeFile(path); };
    prepare(parent, read,
            [this, name = QFileInfo(path).fileName(), window = Window(parent)](const PreparedImport &prepared) {
                askForMode(name, prepared, window);
            });
}

void ExchangeController::performFileImport(const QByteArray &data, Mode mode)
{
    const ImportMode importMode = mode == Mode::ReplaceAll ? ImportMode::Replace : ImportMode::Merge;
    prepare(
        nullptr, [data]() -> Result<QByteArray, FileError> { return data; },
        [this, importMode](const PreparedImport &prepared) { apply(prepared, importMode); });
}

void ExchangeController::performFileSync(const QByteArray &data)
{
    prepare(
        nullptr, [data]() -> Result<QByteArray, FileError> { return data; },
        [this](const PreparedImport &prepared) { m_fileSync.askWithSummary(prepared); });
}

void ExchangeController::prepare(QWidget *parent, const std::function<Result<QByteArray, FileError>()> &read,
                                 const std::function<void(const PreparedImport &)> &ready)
{
    FileBookmarks &bookmarks = m_services.links.fileBookmarks();
    const auto work = [this, read, ready, &bookmarks, home = m_services.links.homeDirectory(),
                       now = m_services.clock.now()](WorkProgress &progress) -> BackgroundWork::Finish {
        const auto bytes = read();
        if (!bytes)
            return [this, error = bytes.error().sentence] {
                fail(text("import.title"_text), text("error.import %@"_text, error));
            };
        if (progress.cancelled) // and perhaps left to itself
            return {};
        const auto prepared = prepareImport(*bytes, bookmarks, home, now, &progress);
        if (prepared)
            return [ready, value = *prepared] { ready(value); };
        return [this, error = importErrorText(prepared.error())] {
            fail(text("import.title"_text), text("error.import %@"_text, error));
        };
    };
    BackgroundWork::start(this, parent, m_services.clock, text("import.working"_text), work);
}

void ExchangeController::askForMode(const QString &fileName, const PreparedImport &prepared, const Window &window)
{
    auto *dialog = new ImportDialog(fileName, prepared, window);
    connect(dialog, &QDialog::accepted, this, [this, dialog, prepared, window] {
        if (dialog->mode() == ImportMode::Sync)
            m_fileSync.askWithPreview(prepared, window);
        else
            apply(prepared, dialog->mode());
    });
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

void ExchangeController::apply(const PreparedImport &prepared, ImportMode mode)
{
    Before before{settingsNow(m_services.settings)};
    const auto result = m_services.exchange.importPrepared(prepared, mode);
    if (!result)
        return fail(text("import.title"_text), text("error.import %@"_text, importErrorText(result.error())));
    before.hasLinks = mode == ImportMode::Replace || result->importedCount > 0;
    before.hasSettings = settingsNow(m_services.settings) != before.settings;
    offerUndo(importAlert(*result, mode, prepared.droppedCount, before.hasSettings), before);
}

void ExchangeController::openBookmarks(const QString &path, QWidget *parent)
{
    const auto read = [path, now = m_services.clock.now()](WorkProgress &progress) -> Foreign {
        const auto bytes = readPlainFile(path, maxForeignBytes);
        if (!bytes)
            return bytes.error();
        return readBookmarksHtml(*bytes, now, &progress);
    };
    openForeign(titleOfFile(path), parent, read);
}

void ExchangeController::openLinkFolder(const QString &path, QWidget *parent)
{
    openForeign(QDir(path).dirName(), parent, [path, now = m_services.clock.now()](WorkProgress &progress) {
        return readLinkFolder(path, now, &progress);
    });
}

void ExchangeController::openLinkFiles(const QStringList &paths, QWidget *parent)
{
    openForeign(text("import.linkFiles"_text), parent, [paths, now = m_services.clock.now()](WorkProgress &progress) {
        return readLinkFiles(paths, now, &progress);
    });
}

void ExchangeController::openForeign(const QString &title, QWidget *parent,
                                     const std::function<Foreign(WorkProgress &)> &read)
{
    FileBookmarks &bookmarks = m_services.links.fileBookmarks();
    const auto work = [this, title, read, &bookmarks,
                       now = m_services.clock.now()](WorkProgress &progress) -> BackgroundWork::Finish {
        const auto foreign = read(progress);
        if (!foreign) {
            return [this, error = foreignErrorText(foreign.error())] {
                fail(text("import.title"_text), text("error.import %@"_text, error));
            };
        }
        if (progress.cancelled) // and perhaps left to itself
            return {};
        LinkList items = arranged(*foreign, title, now);
        settleOnDisk(items, bookmarks);
        return [this, items, result = *foreign] { add(result, items); };
    };
    BackgroundWork::start(this, parent, m_services.clock, text("import.working"_text), work);
}

void ExchangeController::add(const ForeignLinks &foreign, const LinkList &items)
{
    const auto append = [items](LinkList &tree) {
        tree += items;
        return true;
    };
    const bool nothing = items.isEmpty();
    if (!nothing && !m_services.links.edit(LinkStore::Step::Destructive, QStringLiteral("import"), append)) {
        const ImportError error{ImportError::Kind::NotStored, {}};
        return fail(text("import.title"_text), text("error.import %@"_text, importErrorText(error)));
    }
    qCInfo(lcExchange) << "Foreign links: taken" << foreign.links << "folded" << foreign.foldedFolders << "left out"
                       << foreign.leftOut << "unreadable" << foreign.unreadable;
    offerUndo(importAlert(foreign, countAll(items)), {{}, false, !nothing});
}

void ExchangeController::offerUndo(const Alert &alert, const Before &before)
{
    const QByteArray treeAfter = encodeLinks(m_services.links.links());
    m_services.alerts.show(alert, [self = QPointer<ExchangeController>(this), treeAfter, before](int button) {
        if (self && button == 1)
            self->undo(treeAfter, before);
    });
}

void ExchangeController::undo(const QByteArray &treeAfter, const Before &before)
{
    // Undo takes back the newest step; with others on top of the import it
    // would be the wrong one.
    const auto isNewest = [&] { return encodeLinks(m_services.links.links()) == treeAfter; };
    if (before.hasLinks && (!isNewest() || !m_services.links.undo()))
        return fail(text("import.undo"_text), text("import.undoRefused"_text));
    if (before.hasSettings)
        m_services.settings.apply(before.settings);
    qCInfo(lcExchange, "An import was undone");
}

void ExchangeController::fail(const QString &title, const QString &sentence)
{
    m_services.alerts.show(failureAlert(title, sentence));
}

} // namespace orvelle
