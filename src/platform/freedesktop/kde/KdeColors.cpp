#include "platform/freedesktop/kde/KdeColors.h"

#include <QFile>
#include <QSettings>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

struct Role {
    QPalette::ColorRole role;
    const char *key;
};

constexpr Role roles[] = {
    {QPalette::WindowText, "Colors:Window/ForegroundNormal"},
    {QPalette::Base, "Colors:View/BackgroundNormal"},
    {QPalette::AlternateBase, "Colors:View/BackgroundAlternate"},
    {QPalette::Text, "Colors:View/ForegroundNormal"},
    {QPalette::PlaceholderText, "Colors:View/ForegroundInactive"},
    {QPalette::Link, "Colors:View/ForegroundLink"},
    {QPalette::LinkVisited, "Colors:View/ForegroundVisited"},
    {QPalette::ButtonText, "Colors:Button/ForegroundNormal"},
    {QPalette::Highlight, "Colors:Selection/BackgroundNormal"},
    {QPalette::HighlightedText, "Colors:Selection/ForegroundNormal"},
    {QPalette::ToolTipBase, "Colors:Tooltip/BackgroundNormal"},
    {QPalette::ToolTipText, "Colors:Tooltip/ForegroundNormal"},
};

/// "35,38,41" or a name; invalid for anything else.
QColor colorAt(const QSettings &scheme, const QString &key)
{
    const QVariant value = scheme.value(key);
    const QStringList parts = value.toStringList();
    if (parts.size() < 3)
        return QColor(value.toString());
    return QColor(parts[0].toInt(), parts[1].toInt(), parts[2].toInt());
}

QColor between(const QColor &one, const QColor &other)
{
    return QColor((one.red() + other.red()) / 2, (one.green() + other.green()) / 2, (one.blue() + other.blue()) / 2);
}

std::optional<QPalette> paletteOf(const QSettings &scheme)
{
    const QColor window = colorAt(scheme, u"Colors:Window/BackgroundNormal"_s);
    const QColor button = colorAt(scheme, u"Colors:Button/BackgroundNormal"_s);
    if (!window.isValid() || !button.isValid())
        return std::nullopt;
    QPalette palette(button, window); // with the shades of edges
    for (const Role &each : roles) {
        const QColor color = colorAt(scheme, QString::fromLatin1(each.key));
        if (color.isValid())
            palette.setColor(each.role, color);
    }
    for (const auto &[text, ground] : {std::pair{QPalette::WindowText, QPalette::Window},
                                       {QPalette::Text, QPalette::Base},
                                       {QPalette::ButtonText, QPalette::Button}})
        palette.setColor(QPalette::Disabled, text, between(palette.color(text), palette.color(ground)));
    return palette;
}

} // namespace

std::optional<QPalette> kdePalette(const QStringList &configFolders, const QStringList &dataFolders)
{
    QString name;
    for (const QString &folder : configFolders) {
        const QSettings settings(folder + u"/kdeglobals"_s, QSettings::IniFormat);
        if (auto palette = paletteOf(settings))
            return palette;
        if (name.isEmpty())
            name = settings.value(u"General/ColorScheme"_s).toString();
    }
    if (name.isEmpty())
        name = u"BreezeLight"_s;
    for (const QString &folder : dataFolders) {
        const QString file = folder + u"/color-schemes/"_s + name + u".colors"_s;
        if (!name.contains(u'/') && QFile::exists(file))
            return paletteOf(QSettings(file, QSettings::IniFormat));
    }
    return std::nullopt;
}

} // namespace orvelle
