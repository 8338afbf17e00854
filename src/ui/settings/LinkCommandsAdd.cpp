#include "base/Text.h"
#include "links/LinkDetection.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "platform/Clock.h"
#include "platform/FileBookmarks.h"
#include "platform/Volumes.h"
#include "ui/common/ExchangeDialogs.h"
#include "ui/settings/LinkCommands.h"
#include "ui/settings/LinkTreeView.h"

#include <QFileDialog>
#include <QMimeData>
#include <QStringDecoder>

#include <algorithm>

namespace orvelle {

using namespace std::chrono_literals;

namespace {

/// Longer than any title that was written to be read.
constexpr qsizetype longestTitle = 500;

/// The title that browsers send along with an address.
QString browserTitle(const QMimeData &data)
{
    const QString format = QStringLiteral("text/x-moz-url");
    if (!data.hasFormat(format))
        return {};
    QStringDecoder decode(QStringDecoder::Utf16);
    const QString decoded = decode(data.data(format));
    return decode.hasError() ? QString() : decoded.section(u'\n', 1, 1).trimmed().left(longestTitle);
}

/// What is offered, as texts that links can be made of.
QStringList offered(const QMimeData &data)
{
    QStringList texts;
    if (data.hasUrls()) {
        for (const QUrl &url : data.urls())
            texts += url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded);
        return texts;
    }
    for (const QString &line : data.text().split(u'\n', Qt::SkipEmptyParts))
        texts += line.trimmed();
    return texts;
}

bool allLocal(const QList<QUrl> &urls)
{
    return !urls.isEmpty() && std::all_of(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
}

void insertInto(LinkList &list, const LinkList &items, const std::optional<qsizetype> &at)
{
    qsizetype place = at && *at <= list.size() ? *at : list.size();
    for (const LinkItem &item : items)
        list.insert(place++, item);
}

} // namespace

bool LinkCommands::insert(const LinkList &items, const Group &group, const std::optional<qsizetype> &at)
{
    if (items.isEmpty())
        return false;
    const auto change = [items, group, at](LinkList &tree) {
        LinkList fresh;
        for (const LinkItem &item : items)
            fresh += withFreeIdentities(tree, item);
        if (!group) {
            insertInto(tree, fresh, at);
            return true;
        }
        const LinkItem *found = findItem(tree, *group);
        if (!found || !found->children)
            return false;
        LinkItem changed = *found;
        insertInto(*changed.children, fresh, at);
        return replaceItem(tree, changed);
    };
    if (!m_services.links.edit(LinkStore::Step::Ordinary, QStringLiteral("add"), change)) {
        report(EditRefusal::NotFound);
        return false;
    }
    QList<QUuid> ids;
    for (const LinkItem &item : items)
        ids += item.id;
    emit added();
    m_tree.selectItems(ids);
    return true;
}

std::optional<LinkItem> LinkCommands::linkTo(const QString &text, const QString &name) const
{
    auto item = linkFromText(text, name, m_services.volumes, m_services.clock.now());
    if (item && (item->type == LinkType::File || item->type == LinkType::Folder)) {
        if (const auto bookmark = m_services.links.fileBookmarks().create(item->path))
            item->bookmarkData = *bookmark;
    }
    return item;
}

void LinkCommands::addDropped(const QMimeData &data, const Group &group, const std::optional<qsizetype> &at)
{
    const QStringList texts = offered(data);
    const QString title = texts.size() == 1 ? browserTitle(data) : QString();
    const bool files = allLocal(data.urls());
    // Not from inside the drag, where a dialog would keep the other program
    // waiting.
    m_services.clock.after(0ms, this, [=, this] {
        if (!files)
            return addTexts(texts, title, group, at);
        m_services.exchange.openDropped(texts, m_tree.window(),
                                        [=, self = QPointer<LinkCommands>(this)](const QStringList &rest) {
                                            if (self)
                                                self->addTexts(rest, title, group, at);
                                        });
    });
}

void LinkCommands::addTexts(const QStringList &texts, const QString &title, const Group &group,
                            const std::optional<qsizetype> &at)
{
    LinkList items;
    for (const QString &one : texts) {
        if (const auto item = linkTo(one, title))
            items += *item;
    }
    if (items.isEmpty())
        emit said(text("settings.dropNothing"_text), false);
    else
        insert(items, group, at);
}

void LinkCommands::addFiles()
{
    choosePaths(false);
}

void LinkCommands::addFolder()
{
    choosePaths(true);
}

void LinkCommands::choosePaths(bool folder)
{
    auto *dialog =
        new QFileDialog(m_tree.window(), folder ? text("settings.addFolder"_text) : text("settings.addFile"_text),
                        m_services.volumes.realHomeDirectory());
    dialog->setObjectName(QStringLiteral("choosePaths"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(folder ? QFileDialog::Directory : QFileDialog::ExistingFiles);
    dialog->setOption(QFileDialog::ShowDirsOnly, folder);
    connect(dialog, &QFileDialog::filesSelected, this, &LinkCommands::addPaths);
    dialog->open();
}

void LinkCommands::addPaths(const QStringList &paths)
{
    LinkList items;
    for (const QString &path : paths) {
        if (const auto item = linkTo(path, QString()))
            items += *item;
    }
    insert(items, groupForNew(deepestForLinks), std::nullopt);
}

} // namespace orvelle
