#include "platform/freedesktop/AutostartEntry.h"

#include "platform/freedesktop/GLibPointers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#undef signals // a member's name in GIO's headers
#include <gio/gdesktopappinfo.h>

#include <algorithm>
#include <optional>

namespace orvelle {

namespace {

constexpr const char *group = G_KEY_FILE_DESKTOP_GROUP;
constexpr const char *execKey = G_KEY_FILE_DESKTOP_KEY_EXEC;
constexpr const char *tryExecKey = G_KEY_FILE_DESKTOP_KEY_TRY_EXEC;
constexpr const char *hiddenKey = G_KEY_FILE_DESKTOP_KEY_HIDDEN;
constexpr const char *onlyKey = G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN;
constexpr const char *notKey = G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN;
/// With which the program leaves alone one that runs already.
constexpr const char16_t loginOption[] = u" --login";
/// By which desktops turn an entry off without hiding it.
constexpr const char *switchKeys[] = {"X-GNOME-Autostart-enabled", "X-MATE-Autostart-enabled"};

struct FreeList {
    void operator()(char **list) const { g_strfreev(list); }
};

/// One argument of a command as desktop entries quote them.
QString quoted(const QString &argument)
{
    const auto isPlain = [](QChar c) { return c.isLetterOrNumber() || QStringLiteral("/._-+=:,@%").contains(c); };
    if (!argument.isEmpty() && std::all_of(argument.begin(), argument.end(), isPlain))
        return argument;
    QString result(u'"');
    for (const QChar c : argument) {
        if (QStringLiteral("\"`$\\").contains(c))
            result += u'\\';
        result += c;
    }
    return result + u'"';
}

/// A program's path, in which per cent signs are no field codes.
QString quotedProgram(const QString &path)
{
    return quoted(QString(path).replace(u'%', QStringLiteral("%%")));
}

/// Where a desktop finds the program; empty when it finds none.
QString found(const QString &program)
{
    const GText path(g_find_program_in_path(QFile::encodeName(program).constData()));
    return path ? QFile::decodeName(path.get()) : QString();
}

bool isOrvelle(const QString &program)
{
    return QFileInfo(program).fileName().startsWith(u"orvelle", Qt::CaseInsensitive);
}

bool isSameProgram(const QString &left, const QString &right)
{
    return left == right || QFileInfo(left).canonicalFilePath() == QFileInfo(right).canonicalFilePath();
}

} // namespace

void AutostartEntry::Free::operator()(GKeyFile *file) const
{
    g_key_file_free(file);
}

Result<AutostartEntry, QString> AutostartEntry::read(const QString &path)
{
    KeyFile file(g_key_file_new());
    GError *error = nullptr;
    const auto flags = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    if (!g_key_file_load_from_file(file.get(), QFile::encodeName(path).constData(), flags, &error)) {
        const GErrorPtr owned(error);
        return QString::fromUtf8(owned->message);
    }
    if (!g_key_file_has_group(file.get(), group))
        return QStringLiteral("There is no [%1] in it").arg(QString::fromLatin1(group));
    return AutostartEntry(std::move(file));
}

AutostartEntry AutostartEntry::fresh(const QString &program)
{
    AutostartEntry entry{KeyFile(g_key_file_new())};
    GKeyFile *file = entry.m_file.get();
    const auto set = [file](const char *key, const char *value) { g_key_file_set_value(file, group, key, value); };
    set("Type", "Application");
    set("Version", "1.1");
    set("Name", "Orvelle");
    set("Comment", "Your links, files and notes one click away in the tray");
    set("Comment[fr]", "Vos liens, fichiers et notes à un clic dans la zone de notification");
    set("Icon", "org.orvelle.Orvelle");
    set("Terminal", "false");
    set("StartupNotify", "false");
    entry.lead(program);
    g_key_file_set_string(file, group, tryExecKey, program.toUtf8().constData());
    set(switchKeys[0], "true");
    return entry;
}

QString AutostartEntry::text(const char *key) const
{
    const GText value(g_key_file_get_string(m_file.get(), group, key, nullptr));
    return QString::fromUtf8(value.get());
}

bool AutostartEntry::flag(const char *key, bool fallback) const
{
    GError *error = nullptr;
    const bool value = g_key_file_get_boolean(m_file.get(), group, key, &error);
    const GErrorPtr owned(error);
    return error ? fallback : value;
}

QStringList AutostartEntry::list(const char *key) const
{
    const std::unique_ptr<char *, FreeList> values(
        g_key_file_get_string_list(m_file.get(), group, key, nullptr, nullptr));
    QStringList result;
    for (char **each = values.get(); each && *each; ++each)
        result += QString::fromUtf8(*each);
    return result;
}

void AutostartEntry::setList(const char *key, const QStringList &values)
{
    if (values.isEmpty()) {
        g_key_file_remove_key(m_file.get(), group, key, nullptr);
        return;
    }
    const QByteArray joined = values.join(u';').toUtf8() + ';';
    g_key_file_set_value(m_file.get(), group, key, joined.constData());
}

QStringList AutostartEntry::command() const
{
    const QByteArray exec = text(execKey).toUtf8();
    char **words = nullptr;
    if (!g_shell_parse_argv(exec.constData(), nullptr, &words, nullptr))
        return {};
    const std::unique_ptr<char *, FreeList> owned(words);
    QStringList result;
    for (char **each = words; *each; ++each)
        result += QString::fromUtf8(*each);
    return result;
}

bool AutostartEntry::startsIn(const QStringList &currentDesktop) const
{
    if (flag(hiddenKey, false))
        return false;
    if (!std::all_of(std::begin(switchKeys), std::end(switchKeys), [this](const char *key) { return flag(key, true); }))
        return false;
    const QStringList only = list(onlyKey);
    const QStringList never = list(notKey);
    bool isShown = !g_key_file_has_key(m_file.get(), group, onlyKey, nullptr);
    // The first name that an entry knows decides.
    for (const QString &desktop : currentDesktop) {
        if (only.contains(desktop) || never.contains(desktop)) {
            isShown = only.contains(desktop);
            break;
        }
    }
    // Reads Type, Exec and TryExec and looks for the programs.
    const ObjectPtr<GDesktopAppInfo> info(isShown ? g_desktop_app_info_new_from_keyfile(m_file.get()) : nullptr);
    return info && !command().isEmpty();
}

void AutostartEntry::enable(const QStringList &currentDesktop)
{
    g_key_file_remove_key(m_file.get(), group, hiddenKey, nullptr);
    for (const char *key : switchKeys) {
        if (!flag(key, true))
            g_key_file_set_boolean(m_file.get(), group, key, true);
    }
    QStringList never = list(notKey);
    if (never.removeIf([&currentDesktop](const QString &name) { return currentDesktop.contains(name); }) > 0)
        setList(notKey, never);
    const QStringList only = list(onlyKey);
    const bool isNamed = std::any_of(currentDesktop.begin(), currentDesktop.end(),
                                     [&only](const QString &name) { return only.contains(name); });
    if (g_key_file_has_key(m_file.get(), group, onlyKey, nullptr) && !isNamed)
        setList(onlyKey, currentDesktop.isEmpty() ? QStringList() : only + currentDesktop.first(1));
}

void AutostartEntry::hide()
{
    g_key_file_set_boolean(m_file.get(), group, hiddenKey, true);
}

bool AutostartEntry::leadsElsewhere(const QString &program) const
{
    const QStringList words = command();
    if (words.isEmpty())
        return true;
    const QString named = QString(words.first()).replace(QStringLiteral("%%"), QStringLiteral("%"));
    const QString there = found(named);
    if (there.isEmpty() || (isOrvelle(named) && !isSameProgram(there, program)))
        return true;
    const QString tried = text(tryExecKey);
    return isOrvelle(tried) && found(tried).isEmpty();
}

void AutostartEntry::lead(const QString &program)
{
    const QStringList words = command();
    QString exec = quotedProgram(program);
    if (!words.isEmpty() && isOrvelle(words.first())) {
        for (const QString &word : words.sliced(1))
            exec += u' ' + quoted(word);
    } else {
        exec += QStringView(loginOption);
    }
    g_key_file_set_string(m_file.get(), group, execKey, exec.toUtf8().constData());
    if (isOrvelle(text(tryExecKey)))
        g_key_file_set_string(m_file.get(), group, tryExecKey, program.toUtf8().constData());
}

bool AutostartEntry::isUnedited() const
{
    return bytes() == fresh(text(tryExecKey)).bytes();
}

QByteArray AutostartEntry::bytes() const
{
    gsize size = 0;
    const GText data(g_key_file_to_data(m_file.get(), &size, nullptr));
    return QByteArray(data.get(), static_cast<qsizetype>(size));
}

std::optional<QString> AutostartEntry::write(const QString &path) const
{
    // Only a folder that is made here is closed to others.
    const QString folder = QFileInfo(path).path();
    if (!QFileInfo::exists(folder) && g_mkdir_with_parents(QFile::encodeName(folder).constData(), 0700) != 0)
        return QStringLiteral("The folder of what starts at login cannot be made");
    QSaveFile file(path);
    const QByteArray content = bytes();
    if (file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
        file.write(content) == content.size() && file.commit())
        return std::nullopt;
    return file.errorString();
}

} // namespace orvelle
