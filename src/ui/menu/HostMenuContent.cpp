#include "ui/menu/HostMenuContent.h"

#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/menu/BottomRowView.h"
#include "ui/menu/HostWidgetItems.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QSet>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int pictureSide = 16;
constexpr qreal pictureRatio = 2; ///< hosts make pictures smaller, but not sharper
constexpr qsizetype keptPictures = 500;

/// Seen on light and dark: nobody tells which of them the host's menu is.
constexpr QColor onAnyGround(0x80, 0x80, 0x80);

HostMenuItem separator(const QString &key)
{
    HostMenuItem item;
    item.key = key;
    item.separator = true;
    return item;
}

QString keyOf(const MenuEntry &entry)
{
    // A group's action has no id: its name and what is in it tell it apart.
    if (entry.action.kind == MenuAction::Kind::OpenLink)
        return entry.action.linkId.toString(QUuid::WithoutBraces);
    return QString::number(int(entry.kind)) + u'.' + QString::number(int(entry.action.kind)) + u'.' + entry.title;
}

QString pictureIdOf(const MenuIcon &icon)
{
    if (icon.symbol.isEmpty() && icon.filePath.isEmpty() && icon.imageData.isEmpty())
        return {};
    const QString color = icon.color ? toQColor(*icon.color, QGuiApplication::palette()).name() : QString();
    return QStringList{icon.symbol, color, icon.filePath, QString::number(qHash(icon.imageData), 16)}.join(u'\n');
}

} // namespace

HostMenuContent::HostMenuContent(Doors doors, Clock &clock, QObject *parent)
    : HostMenuSource(parent), m_doors(std::move(doors)), m_clock(clock), m_pictures(keptPictures)
{
}

HostMenuContent::~HostMenuContent() = default;

QList<HostMenuItem> HostMenuContent::items()
{
    if (!m_menu) {
        m_menu = m_doors.buildMenu();
        m_plain = itemsOf(m_menu->entries);
    }
    QList<HostMenuItem> items;
    items.reserve(m_plain.size());
    bool inWidgets = false;
    for (qsizetype i = 0; i < m_plain.size(); ++i) {
        const MenuEntry &entry = m_menu->entries.at(i);
        if (entry.kind == MenuEntry::Kind::BottomRow)
            items += bottomItems();
        else if (entry.kind == MenuEntry::Kind::Widget)
            addWidget(items, entry, inWidgets);
        else
            items += m_plain.at(i);
    }
    return items;
}

void HostMenuContent::addWidget(QList<HostMenuItem> &items, const MenuEntry &entry, bool &inWidgets)
{
    auto item = entry.widget ? hostWidgetItem(*entry.widget, m_doors.makeRow) : std::nullopt;
    if (!item)
        return;
    if (!std::exchange(inWidgets, true) && !items.isEmpty())
        items += separator(u"separator.widgets"_s);
    MenuIcon icon;
    icon.symbol = hostWidgetSymbol(*entry.widget);
    addPicture(*item, icon);
    items += *item;
}

QList<HostMenuItem> HostMenuContent::itemsOf(const QList<MenuEntry> &entries)
{
    QList<HostMenuItem> items;
    items.reserve(entries.size());
    for (const MenuEntry &entry : entries)
        items += itemOf(entry);
    return items;
}

HostMenuItem HostMenuContent::itemOf(const MenuEntry &entry)
{
    HostMenuItem item;
    item.key = keyOf(entry);
    item.title = entry.title;
    item.enabled = entry.enabled;
    item.separator = entry.kind == MenuEntry::Kind::Separator;
    addPicture(item, entry.icon);
    if (entry.kind == MenuEntry::Kind::Submenu) {
        item.childCount = entry.childLinks.size();
        item.children = [this, entry] { return itemsOf(m_doors.childEntries(entry)); };
    } else {
        item.choose = [this, action = entry.action] { m_doors.perform(action); };
    }
    return item;
}

QList<HostMenuItem> HostMenuContent::bottomItems()
{
    QList<HostMenuItem> items{separator(u"separator.bottom"_s)};
    QSet<MenuAction::Kind> there;
    for (int button = 0; button < BottomRowView::buttonCount; ++button) {
        const MenuAction action = BottomRowView::action(button);
        there += action.kind;
        items += actionItem(BottomRowView::name(button), BottomRowView::symbol(button), action);
    }
    for (const MenuEntry &entry : m_doors.buildContextMenu().entries) {
        if (!there.contains(entry.action.kind))
            items += actionItem(entry.title, entry.icon.symbol, entry.action);
    }
    return items;
}

HostMenuItem HostMenuContent::actionItem(const QString &title, const QString &symbol, const MenuAction &action)
{
    MenuEntry entry;
    entry.title = title;
    entry.action = action;
    entry.icon.symbol = symbol;
    return itemOf(entry);
}

void HostMenuContent::addPicture(HostMenuItem &item, const MenuIcon &icon)
{
    item.pictureId = pictureIdOf(icon);
    if (!item.pictureId.isEmpty())
        item.picture = [this, id = item.pictureId, icon] { return picture(id, icon); };
}

QByteArray HostMenuContent::picture(const QString &id, const MenuIcon &icon)
{
    if (const QByteArray *known = m_pictures.object(id))
        return *known;
    const QColor color = icon.color ? toQColor(*icon.color, QGuiApplication::palette()) : onAnyGround;
    const QPixmap pixmap = linkPixmap({icon.imageData, icon.filePath, icon.symbol}, pictureSide, color, pictureRatio);
    QByteArray png;
    QBuffer buffer(&png);
    if (!pixmap.isNull() && buffer.open(QIODevice::WriteOnly))
        pixmap.save(&buffer, "PNG");
    m_pictures.insert(id, new QByteArray(png));
    return png;
}

void HostMenuContent::setShown(bool shown)
{
    const bool wasShown = m_live != nullptr;
    m_live.reset();
    m_end.reset();
    if (shown) {
        m_doors.catchUp();
        m_menu.reset();
        m_live = m_clock.repeating(livePeriod, [this] { emit changed(); });
        m_end = m_clock.singleShot(longestShown, [this] { setShown(false); });
    }
    if (shown != wasShown)
        m_doors.setLive(shown);
}

void HostMenuContent::contentChanged()
{
    m_menu.reset();
    if (!m_change) {
        m_change = m_clock.singleShot(gathering, [this] {
            m_change.reset();
            emit changed();
        });
    }
}

} // namespace orvelle
