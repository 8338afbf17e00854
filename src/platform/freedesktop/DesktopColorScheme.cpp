#include "platform/freedesktop/DesktopColorScheme.h"

#include "platform/freedesktop/CurrentDesktop.h"
#include "platform/freedesktop/kde/KdeColors.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QFileSystemWatcher>
#include <QGuiApplication>
#include <QPalette>
#include <QSettings>
#include <QStandardPaths>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int portalTimeoutMs = 5000;
constexpr double darkBelowLuma = 128.0;

QString portalService()
{
    return u"org.freedesktop.portal.Desktop"_s;
}
QString portalPath()
{
    return u"/org/freedesktop/portal/desktop"_s;
}
QString settingsInterface()
{
    return u"org.freedesktop.portal.Settings"_s;
}
QString appearanceGroup()
{
    return u"org.freedesktop.appearance"_s;
}
QString schemeKey()
{
    return u"color-scheme"_s;
}

QString contrastKey()
{
    return u"contrast"_s;
}

/// Where GNOME keeps its switch, which its portal does not translate.
QString gnomeGroup()
{
    return u"org.gnome.desktop.a11y.interface"_s;
}
QString gnomeContrastKey()
{
    return u"high-contrast"_s;
}

QVariant gtkSetting(const QString &key)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QSettings(folder + u"/gtk-3.0/settings.ini"_s, QSettings::IniFormat).value(u"Settings/"_s + key);
}

QString gtkTheme()
{
    return gtkSetting(u"gtk-theme-name"_s).toString();
}

bool gtkPrefersDark()
{
    return gtkSetting(u"gtk-application-prefer-dark-theme"_s).toBool() ||
           gtkTheme().endsWith(u"-dark"_s, Qt::CaseInsensitive) ||
           gtkTheme().compare(u"HighContrastInverse"_s, Qt::CaseInsensitive) == 0;
}

/// GNOME's bar is dark beside light windows, too.
bool hasDarkBar()
{
    return isCurrentDesktop(u"GNOME") && !isCurrentDesktop(u"GNOME-Classic");
}

/// Read() wraps its answer twice.
uint numberIn(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

QStringList configFolders()
{
    return QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
}
QStringList dataFolders()
{
    return QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
}

bool isKde()
{
    return isCurrentDesktop(u"KDE");
}

} // namespace

DesktopColorScheme::DesktopColorScheme(const QDBusConnection &sessionBus, QObject *parent)
    : Appearance(parent),
      m_bus(sessionBus),
      m_portal(portalService(), sessionBus, QDBusServiceWatcher::WatchForRegistration)
{
    connect(&m_portal, &QDBusServiceWatcher::serviceRegistered, this, &DesktopColorScheme::askPortal);
    if (QCoreApplication *application = QCoreApplication::instance())
        application->installEventFilter(this);
}

DesktopColorScheme::~DesktopColorScheme() = default;

void DesktopColorScheme::start()
{
    if (isKde())
        listenToKde();
    if (!m_bus.isConnected())
        return;
    // Slots are found by the names of their types, and the toolkit may not have
    // met this one yet.
    qRegisterMetaType<QDBusVariant>();
    m_bus.connect({}, portalPath(), settingsInterface(), u"SettingChanged"_s, this,
                  SLOT(settingChanged(QString, QString, QDBusVariant)));
    askPortal();
}

/// KDE tells of its colours also where no portal was started.
void DesktopColorScheme::listenToKde()
{
    m_panelSettings = std::make_unique<QFileSystemWatcher>();
    connect(m_panelSettings.get(), &QFileSystemWatcher::fileChanged, this, [this] {
        watchPanel();
        emit changed();
    });
    connect(m_panelSettings.get(), &QFileSystemWatcher::directoryChanged, this, [this] {
        const qsizetype before = m_panelSettings->files().size();
        watchPanel();
        if (m_panelSettings->files().size() != before)
            emit changed();
    });
    watchPanel();
    m_bus.connect({}, u"/KGlobalSettings"_s, u"org.kde.KGlobalSettings"_s, u"notifyChange"_s, this,
                  SLOT(kdeSettingChanged(int, int)));
}

/// A file that is replaced is not watched any more, and one that is not there
/// yet comes into its folder.
void DesktopColorScheme::watchPanel()
{
    for (const QString &folder : configFolders()) {
        const QString file = folder + u"/plasmarc"_s;
        const bool isThere = QFile::exists(file);
        m_panelSettings->addPath(isThere ? file : folder);
        if (isThere)
            m_panelSettings->removePath(folder);
    }
}

bool DesktopColorScheme::prefersDark() const
{
    if (m_preference != Preference::None)
        return m_preference == Preference::Dark;
    if (const auto told = palette())
        return contrastTo(told->color(QPalette::Window)) == onDark();
    return gtkPrefersDark();
}

bool DesktopColorScheme::prefersHighContrast() const
{
    return m_highContrast || m_gnomeContrast || gtkTheme().startsWith(u"HighContrast"_s, Qt::CaseInsensitive);
}

std::optional<QPalette> DesktopColorScheme::palette() const
{
    // Whoever chose another theme for the toolkit wants that one's colours.
    const QString theme = qEnvironmentVariable("QT_QPA_PLATFORMTHEME");
    if (!isKde() || (!theme.isEmpty() && theme.toLower() != u"kde"_s))
        return std::nullopt;
    return kdePalette(configFolders(), dataFolders());
}

QColor DesktopColorScheme::symbolColor() const
{
    if (hasDarkBar())
        return onDark();
    if (const auto panel = isKde() ? kdePanelColor(configFolders(), dataFolders()) : std::nullopt)
        return contrastTo(*panel);
    switch (m_preference) {
    case Preference::Dark:
        return onDark();
    case Preference::Light:
        return onLight();
    case Preference::None:
        break;
    }
    if (const auto told = palette())
        return contrastTo(told->color(QPalette::Window));
    return QGuiApplication::palette().color(QPalette::WindowText);
}

QColor DesktopColorScheme::contrastTo(const QColor &background)
{
    // The weights of Rec. 709, on the gamma-encoded values: good enough to
    // tell a dark panel from a light one.
    const double luma = 0.2126 * background.red() + 0.7152 * background.green() + 0.0722 * background.blue();
    return luma < darkBelowLuma ? onDark() : onLight();
}

bool DesktopColorScheme::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance() &&
        m_preference == Preference::None)
        emit changed();
    return Appearance::eventFilter(watched, event);
}

void DesktopColorScheme::askPortal()
{
    ask(appearanceGroup(), schemeKey(), &DesktopColorScheme::setPreference);
    ask(appearanceGroup(), contrastKey(), &DesktopColorScheme::setContrast);
    ask(gnomeGroup(), gnomeContrastKey(), &DesktopColorScheme::setGnomeContrast);
}

void DesktopColorScheme::ask(const QString &group, const QString &key, void (DesktopColorScheme::*answer)(uint))
{
    auto call = QDBusMessage::createMethodCall(portalService(), portalPath(), settingsInterface(), u"Read"_s);
    call << group << key;
    call.setAutoStartService(false);
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call, portalTimeoutMs), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, answer] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *pending;
        if (reply.isValid())
            (this->*answer)(numberIn(reply.value().variant()));
    });
}

void DesktopColorScheme::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group == gnomeGroup() && key == gnomeContrastKey())
        setGnomeContrast(numberIn(value.variant()));
    if (group != appearanceGroup())
        return;
    if (key == schemeKey())
        setPreference(numberIn(value.variant()));
    else if (key == contrastKey())
        setContrast(numberIn(value.variant()));
}

void DesktopColorScheme::kdeSettingChanged(int kind, int)
{
    constexpr int colors = 0;
    if (kind == colors)
        emit changed();
}

void DesktopColorScheme::setPreference(uint value)
{
    const auto preference = value <= 2 ? Preference(value) : Preference::None;
    if (preference == m_preference)
        return;
    m_preference = preference;
    emit changed();
}

void DesktopColorScheme::setContrast(uint value)
{
    if (m_highContrast == (value == 1))
        return;
    m_highContrast = value == 1;
    emit changed();
}

void DesktopColorScheme::setGnomeContrast(uint on)
{
    if (m_gnomeContrast == (on != 0))
        return;
    m_gnomeContrast = on != 0;
    emit changed();
}

} // namespace orvelle
