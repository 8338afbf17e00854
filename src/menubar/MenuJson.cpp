#include "menubar/MenuJson.h"

#include "base/JsonWriter.h"
#include "base/Text.h"

namespace orvelle {

namespace {

QString kindName(MenuEntry::Kind kind)
{
    switch (kind) {
    case MenuEntry::Kind::Item:
        return QStringLiteral("item");
    case MenuEntry::Kind::Submenu:
        return QStringLiteral("submenu");
    case MenuEntry::Kind::Separator:
        return QStringLiteral("separator");
    case MenuEntry::Kind::Widget:
        return QStringLiteral("widget");
    case MenuEntry::Kind::BottomRow:
        return QStringLiteral("bottomRow");
    }
    Q_UNREACHABLE();
}

/// Colours in the table differ pairwise, so the way back is unique.
QString colorKey(const LinkColor &color)
{
    for (const ColorChoice &choice : allColors()) {
        if (choice.color == color)
            return QString::fromLatin1(choice.key);
    }
    return {};
}

void writeEntries(JsonWriter &json, const QList<MenuEntry> &entries);

void writeEntry(JsonWriter &json, const MenuEntry &entry)
{
    json.beginObject();
    json.key("kind");
    json.string(kindName(entry.kind));
    json.key("title");
    json.string(entry.title);
    json.key("enabled");
    json.boolean(entry.enabled);
    json.key("icon");
    json.string(entry.icon.symbol);
    if (entry.action.kind == MenuAction::Kind::OpenSyncSettings) {
        json.key("action");
        json.string(QStringLiteral("openSyncSettings"));
    }
    if (entry.tint) {
        json.key("tint");
        json.string(colorKey(*entry.tint));
    }
    if (entry.customRow) {
        json.key("italic");
        json.boolean(entry.italic);
        json.key("chevron");
        json.boolean(entry.chevron);
        json.key("interactive");
        json.boolean(entry.interactive);
    }
    if (entry.widget) {
        json.key("widget");
        json.string(rawValue(*entry.widget));
    }
    if (entry.kind == MenuEntry::Kind::Submenu) {
        json.key("children");
        writeEntries(json, childEntries(entry));
    }
    json.endObject();
}

void writeEntries(JsonWriter &json, const QList<MenuEntry> &entries)
{
    json.beginArray();
    for (const MenuEntry &entry : entries)
        writeEntry(json, entry);
    json.endArray();
}

/// A name on one line, whatever it holds.
QString oneLine(QString title)
{
    for (QChar &c : title) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return title;
}

QString outlineTitle(const MenuEntry &entry)
{
    switch (entry.kind) {
    case MenuEntry::Kind::Item:
        return entry.enabled ? oneLine(entry.title) : u'(' + oneLine(entry.title) + u')';
    case MenuEntry::Kind::Submenu:
        return oneLine(entry.title) + QStringLiteral(" ▸");
    case MenuEntry::Kind::Separator:
        return QStringLiteral("──────");
    case MenuEntry::Kind::Widget:
        return u'<' + rawValue(*entry.widget) + u'>';
    case MenuEntry::Kind::BottomRow:
        return QStringLiteral("[%1] [%2] [%3]")
            .arg(text("menu.quickAdd"_text), text("menu.quickNote"_text), text("menu.settings"_text));
    }
    Q_UNREACHABLE();
}

void appendOutline(QString &out, const QList<MenuEntry> &entries, int depth)
{
    for (const MenuEntry &entry : entries) {
        out += QString(depth * 2, u' ') + outlineTitle(entry) + u'\n';
        if (entry.kind == MenuEntry::Kind::Submenu)
            appendOutline(out, childEntries(entry), depth + 1);
    }
}

} // namespace

QByteArray menuJson(const Menu &menu)
{
    JsonWriter json(JsonWriter::Style::Pretty);
    writeEntries(json, menu.entries);
    return json.take() + '\n';
}

QString menuOutline(const Menu &menu)
{
    QString out;
    appendOutline(out, menu.entries, 0);
    return out;
}

} // namespace orvelle
