#include "ui/settings/LinkEditor.h"

#include "base/Text.h"
#include "links/LinkColors.h"
#include "links/LinkIcons.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "ui/common/ColorMenu.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/LinkIconView.h"
#include "ui/settings/LinkActions.h"
#include "ui/settings/LinkColorMenu.h"
#include "ui/settings/LinkField.h"
#include "ui/settings/LinkIconChoices.h"
#include "ui/settings/LinkPathChecker.h"
#include "ui/settings/PageScroll.h"

#include <QAction>
#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>

namespace orvelle {

namespace {

bool isLocal(const LinkItem &item)
{
    return item.type == LinkType::File || item.type == LinkType::Folder;
}

/// The one answer of all items, or none when they differ.
template<typename F>
auto common(const LinkList &items, F question) -> std::optional<decltype(question(items.front()))>
{
    const auto first = question(items.front());
    const bool same =
        std::all_of(items.begin(), items.end(), [&](const LinkItem &item) { return question(item) == first; });
    return same ? std::optional(first) : std::nullopt;
}

/// The choice of a kind's own colour.
std::optional<QString> ownColor(const LinkItem &item)
{
    for (const ColorChoice &choice : allColors()) {
        if (choice.color == displayColor(item))
            return QString::fromLatin1(choice.key);
    }
    return std::nullopt;
}

QString colorName(const std::optional<QString> &key)
{
    for (const ColorChoice &choice : allColors()) {
        if (key && *key == QLatin1StringView(choice.key))
            return text(choice.label);
    }
    return text("settings.defaultIcon"_text);
}

QString iconName(const LinkItem &item)
{
    for (const IconChoice &choice : iconChoices(item)) {
        if (item.customIconName && *item.customIconName == QLatin1StringView(choice.symbol))
            return text(choice.label);
    }
    return text("settings.defaultIcon"_text);
}

} // namespace

void LinkEditor::setItems(const QList<QUuid> &ids)
{
    if (ids != m_ids) {
        if (m_gone && ids.isEmpty())
            return;
        if (!m_gone)
            commit();
        if (isBeingTyped()) // and cannot stay, nor be taken
            SettingsWindow::showStatus(this, text("settings.entryDropped"_text));
        m_gone = false;
        m_name->revert();
        m_path->revert();
        showProblem({});
    }
    m_ids = ids;
    refresh();
}

void LinkEditor::commit()
{
    if (m_gone)
        return;
    m_name->commit();
    m_path->commit();
}

bool LinkEditor::isBeingTyped() const
{
    return m_name->isModified() || m_path->isModified();
}

std::optional<QString> LinkEditor::unstored() const
{
    return isBeingTyped() ? std::optional(m_name->text() + u'\n' + m_path->text()) : std::nullopt;
}

void LinkEditor::showUnstored()
{
    LinkField *field = m_path->isModified() ? m_path : m_name;
    field->setFocus(Qt::OtherFocusReason);
    m_scroll->ensureWidgetVisible(field);
}

void LinkEditor::refresh()
{
    LinkList items;
    for (const QUuid &id : m_ids) {
        if (const auto item = m_services.links.find(id))
            items += *item;
    }
    // What was typed about an item that is gone stays to be copied.
    if (items.isEmpty() && !m_ids.isEmpty() && isBeingTyped()) {
        m_gone = true;
        showProblem(text("settings.itemGone"_text));
    }
    if (m_gone)
        return;
    if (items.isEmpty()) {
        showNothing();
        return;
    }
    m_items = items;
    m_nothing->hide();
    m_scroll->show();
    showHeader();
    showFields();
    showLooks();
    showButtons();
}

void LinkEditor::showNothing()
{
    m_items.clear();
    m_scroll->hide();
    m_nothing->show();
}

void LinkEditor::showHeader()
{
    const bool one = m_items.size() == 1;
    const LinkItem &first = m_items.front();
    m_icon->setVisible(one);
    m_icon->setLink(first, m_paths.isBroken(first));
    m_kind->setText(one ? text(kindLabel(first)) : text("settings.selected %lld"_text, m_items.size()));
    QString detail;
    if (one && first.isGroup())
        detail = text("settings.memberCount %lld"_text, countAll(first.children.value_or(LinkList())));
    else if (one && m_paths.isBroken(first))
        detail = text("settings.broken"_text);
    m_detail->setText(detail);
    m_detail->setVisible(!detail.isEmpty());
}

void LinkEditor::showFields()
{
    const bool one = m_items.size() == 1;
    const LinkItem &first = m_items.front();
    const bool hasPath = one && (first.type == LinkType::Url || isLocal(first));
    m_nameLabel->setVisible(one);
    m_name->setVisible(one);
    m_pathLabel->setVisible(hasPath);
    m_pathLabel->setText(isLocal(first) ? text("settings.path"_text) : text("settings.address"_text));
    m_path->setVisible(hasPath);
    m_path->setAccessibleName(m_pathLabel->text());
    m_choose->setVisible(one && isLocal(first));
    if (!one)
        return;
    m_name->setStored(first.name);
    m_path->setStored(first.path);
    m_path->setToolTip(QString());
}

void LinkEditor::showLooks()
{
    const LinkItem &first = m_items.front();
    const auto choices = common(m_items, [](const LinkItem &item) { return iconChoices(item).data(); });
    const bool hasIcons = choices && *choices;
    m_iconLabel->setVisible(hasIcons);
    m_iconButton->setVisible(hasIcons);
    const auto symbol = common(m_items, [](const LinkItem &item) { return item.sfSymbolName(); });
    m_iconButton->setIcon(symbolIcon(first.sfSymbolName(), linkIconColor(first, palette(), QPalette::Button)));
    m_iconButton->setText(symbol ? iconName(first) : text("settings.various"_text));
    m_iconButton->setAccessibleName(text("settings.icon"_text) + QStringLiteral(": ") + m_iconButton->text());

    const auto color = common(m_items, [](const LinkItem &item) { return item.customIconColor; });
    const auto shown = common(
        m_items, [](const LinkItem &item) { return item.customIconColor ? item.customIconColor : ownColor(item); });
    m_colorButton->setIcon(shown && *shown ? colorSwatch(**shown, palette()) : QIcon());
    m_colorButton->setText(color ? colorName(*color) : text("settings.various"_text));
    m_colorButton->setAccessibleName(text("settings.color"_text) + QStringLiteral(": ") + m_colorButton->text());
    m_colors->setCurrent(color.value_or(std::nullopt));

    const auto colored = common(m_items, [](const LinkItem &item) { return item.coloredInMenu(); });
    m_colored->setTristate(!colored);
    m_colored->setCheckState(!colored ? Qt::PartiallyChecked : *colored ? Qt::Checked : Qt::Unchecked);
}

void LinkEditor::showButtons()
{
    const bool one = m_items.size() == 1;
    const LinkItem &first = m_items.front();
    m_sort->setVisible(one && first.isGroup());
    m_sort->setEnabled(m_actions.sort->isEnabled());
    m_open->setVisible(one && !first.isGroup());
    m_open->setText(first.type == LinkType::Note ? text("settings.editNote"_text) : text("settings.open"_text));
    m_reveal->setVisible(one && isLocal(first));
    m_remove->setVisible(!one);
}

void LinkEditor::showProblem(const QString &sentence)
{
    QPalette warning = palette();
    const QColor red = toQColor(nsColor(QStringLiteral("red")).value_or(LinkColor{}), warning);
    warning.setColor(QPalette::WindowText, readable(red, warning.color(QPalette::Window),
                                                    warning.color(QPalette::WindowText), textContrast(warning)));
    m_problem->setPalette(warning);
    m_problem->setText(sentence);
    m_problem->setVisible(!sentence.isEmpty());
    m_path->setAccessibleDescription(sentence);
}

void LinkEditor::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || m_items.isEmpty())
        return;
    showLooks();
    showProblem(m_problem->text());
}

void LinkEditor::hideEvent(QHideEvent *event)
{
    commit();
    QWidget::hideEvent(event);
}

} // namespace orvelle
