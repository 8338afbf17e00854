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

/// The first file `relative` in one of the folders; empty where there is none,
/// or where the name in it is a way out of them.
QString found(const QStringList &folders, const QString &relative, const QString &name)
{
    if (name.contains(u'/'))
        return {};
    for (const QString &folder : folders) {
        const QString file = folder + u'/' + relative.arg(name);
        if (QFile::exists(file))
            return file;
    }
    return {};
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
            name = settings.value(u"ColorScheme"_s).toString(); // QSettings has "General" without a name
    }
    if (name.isEmpty())
        name = u"BreezeLight"_s;
    const QString file = found(dataFolders, u"color-schemes/%1.colors"_s, name);
    return file.isEmpty() ? std::nullopt : paletteOf(QSettings(file, QSettings::IniFormat));
}

std::optional<QColor> kdePanelColor(const QStringList &configFolders, const QStringList &dataFolders)
{
    QString name;
    for (qsizetype i = 0; i < configFolders.size() && name.isEmpty(); ++i)
        name = QSettings(configFolders[i] + u"/plasmarc"_s, QSettings::IniFormat).value(u"Theme/name"_s).toString();
    const QString file = name.isEmpty() ? QString() : found(dataFolders, u"plasma/desktoptheme/%1/colors"_s, name);
    const QColor color =
        file.isEmpty() ? QColor() : colorAt(QSettings(file, QSettings::IniFormat), u"Colors:Window/BackgroundNormal"_s);
    return color.isValid() ? std::optional(color) : std::nullopt;
}

} // namespace orvelle
