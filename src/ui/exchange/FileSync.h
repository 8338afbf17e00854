#pragma once

#include "links/exchange/LinkExchange.h"
#include "sync/SyncAnalysis.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace orvelle {

class Alerts;

/// Synchronises the tree with a document that somebody opened: says what would
/// change, makes the selected changes in one step, and says what changed. The
/// settings in the document stay where they are. Main thread.
class FileSync : public QObject
{
    Q_OBJECT

public:
    struct Services {
        LinkStore &links;
        Alerts &alerts;
        Clock &clock;
    };
    explicit FileSync(const Services &services, QObject *parent = nullptr);

    /// Asks with the summary, and shows the changes where that is wished.
    void askWithSummary(const PreparedImport &prepared);
    /// Shows the changes at once.
    void askWithPreview(const PreparedImport &prepared, QWidget *window);

private:
    using Analysed = std::function<void(const SyncAnalysis &)>;
    void analyse(const PreparedImport &prepared, QWidget *window, const Analysed &analysed);
    void preview(const SyncAnalysis &analysis, const LinkList &imported, QWidget *window);
    void apply(const SyncAnalysis &analysis, const LinkList &imported);

    Services m_services;
};

} // namespace orvelle
