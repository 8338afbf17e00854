#pragma once

#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ForeignLinks.h"
#include "links/exchange/LinkExchange.h"
#include "ui/common/ExchangeDialogs.h"
#include "ui/common/ExchangeImporter.h"
#include "ui/exchange/DroppedDocument.h"
#include "ui/exchange/ExchangeFiles.h"
#include "ui/exchange/FileSync.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>

namespace orvelle {

class Alerts;
struct Alert;
struct FileError;
class Clock;
class ExchangeSettings;
class LinkStore;
class UserDefaults;

/// Takes documents and links of other programs in and writes them: asks for
/// the file, works in the background, changes the tree in one step, says what
/// came of it and offers to undo it. Main thread.
class ExchangeController : public QObject, public ExchangeDialogs, public ExchangeImporter
{
    Q_OBJECT

public:
    struct Services {
        LinkStore &links;
        LinkExchange &exchange;
        ExchangeSettings &settings;
        UserDefaults &defaults;
        Alerts &alerts;
        Clock &clock;
    };
    explicit ExchangeController(const Services &services, QObject *parent = nullptr);

    void exportDocument(QWidget *parent) override;
    void importDocument(QWidget *parent) override;
    void importBookmarks(QWidget *parent) override;
    void exportBookmarks(QWidget *parent) override;
    void importLinkFolder(QWidget *parent) override;
    void openDropped(const QStringList &paths, QWidget *parent,
                     const std::function<void(const QStringList &)> &rest) override;

    void performFileImport(const QByteArray &data, Mode mode) override;
    void performFileSync(const QByteArray &data) override;

private:
    using Window = QPointer<QWidget>;
    using Foreign = Result<ForeignLinks, ForeignError>;
    /// What has to be put back to undo an import.
    struct Before {
        ExportData settings;
        bool hasSettings = false;
        bool hasLinks = false; ///< the tree was changed, in one step
    };

    using DroppedKinds = QHash<QString, DroppedKind>;
    QStringList open(const QStringList &paths, const DroppedKinds &kinds, QWidget *parent);
    void openDocument(const QString &path, QWidget *parent);
    void openForeign(const QString &title, QWidget *parent, const std::function<Foreign(WorkProgress &)> &read);
    void openBookmarks(const QString &path, QWidget *parent);
    void openLinkFolder(const QString &path, QWidget *parent);
    void openLinkFiles(const QStringList &paths, QWidget *parent);

    /// Reads and prepares in the background, then hands on what is valid.
    void prepare(QWidget *parent, const std::function<Result<QByteArray, FileError>()> &read,
                 const std::function<void(const PreparedImport &)> &ready);
    void askForMode(const QString &fileName, const PreparedImport &prepared, const Window &window);
    void apply(const PreparedImport &prepared, ImportMode mode);
    void add(const ForeignLinks &foreign, const LinkList &items);
    void writeInBackground(const QString &path, QWidget *parent, const std::function<QByteArray()> &make,
                           const std::function<void()> &written);
    void offerUndo(const Alert &alert, const Before &before);
    void undo(const QByteArray &treeAfter, const Before &before);
    void fail(const QString &title, const QString &sentence);

    Services m_services;
    ExchangeFiles m_files;
    FileSync m_fileSync;
};

} // namespace orvelle
