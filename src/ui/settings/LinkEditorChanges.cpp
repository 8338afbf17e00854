#include "base/Notifications.h"
#include "base/Text.h"
#include "links/HomePaths.h"
#include "links/LinkDetection.h"
#include "links/LinkStore.h"
#include "platform/FileBookmarks.h"
#include "platform/Volumes.h"
#include "ui/common/LinkIconView.h"
#include "ui/settings/LinkCommands.h"
#include "ui/settings/LinkEditor.h"
#include "ui/settings/LinkField.h"
#include "ui/settings/LinkIconChoices.h"
#include "ui/settings/LinkIconChooser.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QToolButton>

#include <algorithm>

namespace orvelle {

bool LinkEditor::change(const std::function<void(LinkItem &)> &how)
{
    const auto refusal = m_services.links.updateLinks(m_ids, how);
    m_commands.report(refusal);
    return !refusal;
}

bool LinkEditor::commitName(const QString &name)
{
    if (m_gone)
        return false;
    if (name.isEmpty())
        return true; // the stored one comes back
    return change([name](LinkItem &item) { item.name = name; });
}

bool LinkEditor::commitPath(const QString &typed)
{
    // A dialog may ask for an item that has gone meanwhile.
    if (m_gone || m_items.isEmpty())
        return false;
    const bool local = m_items.front().type == LinkType::File || m_items.front().type == LinkType::Folder;
    const QString path =
        local ? QDir::cleanPath(expandedHomePath(typed, m_services.volumes.realHomeDirectory())) : typed;
    const bool good =
        local ? path.startsWith(u'/') : isValidLink(path) && !path.startsWith(u'/') && !path.startsWith(u'~');
    if (!good) {
        showProblem(local ? text("settings.badPath"_text) : text("settings.badAddress"_text));
        return false;
    }
    showProblem({});
    std::optional<QByteArray> bookmark;
    if (local) {
        if (const auto made = m_services.links.fileBookmarks().create(path))
            bookmark = *made;
    }
    const bool otherSite = QUrl(path).host() != QUrl(m_items.front().path).host();
    return change([path, bookmark, otherSite](LinkItem &item) {
        item.path = path;
        item.bookmarkData = bookmark;
        if (otherSite)
            item.faviconData.reset();
    });
}

void LinkEditor::choosePath()
{
    const bool folder = m_items.front().type == LinkType::Folder;
    // The dialog looks at the folder it begins with, so none that may hang.
    const Volumes &volumes = m_services.volumes;
    const QString &present = m_items.front().path;
    const QString start = volumes.distantVolumeHolding(present).isEmpty() ? QFileInfo(present).absolutePath()
                                                                          : volumes.realHomeDirectory();
    auto *dialog = new QFileDialog(
        window(), folder ? text("settings.chooseFolder"_text) : text("settings.chooseFile"_text), start);
    dialog->setObjectName(QStringLiteral("choosePath"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(folder ? QFileDialog::Directory : QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::ShowDirsOnly, folder);
    const QList<QUuid> about = m_ids;
    connect(dialog, &QFileDialog::fileSelected, this, [this, about](const QString &path) {
        // Another item may have been selected meanwhile.
        if (about == m_ids && commitPath(path))
            m_path->revert();
    });
    dialog->open();
}

void LinkEditor::chooseIcon()
{
    if (!m_chooser) {
        m_chooser = new LinkIconChooser(this);
        connect(m_chooser, &LinkIconChooser::chosen, this, &LinkEditor::takeIcon);
    }
    const LinkItem &first = m_items.front();
    LinkItem plain = first;
    plain.customIconName.reset();
    m_chooser->setChoices(iconChoices(first), plain.sfSymbolName(), first.customIconName,
                          linkIconColor(first, palette()));
    m_chooser->popupAt(*m_iconButton);
}

void LinkEditor::takeIcon(const QString &symbol)
{
    const auto name = symbol.isEmpty() ? std::nullopt : std::optional(symbol);
    if (std::all_of(m_items.begin(), m_items.end(), [&](const LinkItem &item) { return item.customIconName == name; }))
        return;
    change([name](LinkItem &item) { item.customIconName = name; });
}

void LinkEditor::takeColoredInMenu()
{
    const bool colored = m_colored->checkState() != Qt::Unchecked;
    change([colored](LinkItem &item) { item.noteColoredInMenu = colored; });
}

} // namespace orvelle
