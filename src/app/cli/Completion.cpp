#include "app/cli/Completion.h"

#include "app/cli/CommandLine.h"

#include <QMap>

#include <algorithm>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// A command as a shell needs to know it.
struct Completed {
    QStringList name; ///< its words
    QString summary;
    QStringList flags;  ///< without dashes
    QStringList valued; ///< the same
    bool takesFiles = false;

    QStringList options() const
    {
        QStringList result;
        for (const QString &option : flags + valued)
            result += (option.size() == 1 ? u"-"_s : u"--"_s) + option;
        return result + QStringList{u"--help"_s};
    }
};

/// Longer names first, so that "snapshots restore" is found before "snapshots".
std::vector<Completed> completedCommands()
{
    const auto words = [](const char *list) { return QString::fromLatin1(list).split(u' ', Qt::SkipEmptyParts); };
    std::vector<Completed> result;
    for (const Command &command : commands()) {
        const QString usage = QString::fromLatin1(command.usage);
        const bool takesFiles = std::ranges::any_of(QStringList{u"FILE"_s, u"FOLDER"_s, u"LOCAL"_s, u"ADDRESS"_s},
                                                    [&](const QString &word) { return usage.contains(word); });
        result.push_back({words(command.name), QString::fromUtf8(command.summary), words(command.flags),
                          words(command.valued), takesFiles});
    }
    std::ranges::stable_sort(result, std::ranges::greater(), [](const Completed &c) { return c.name.size(); });
    return result;
}

/// First words with the words that may follow them; those of one word alone
/// have an empty list.
QMap<QString, QStringList> firstWords(const std::vector<Completed> &all)
{
    QMap<QString, QStringList> result;
    for (const Completed &command : all) {
        QStringList &following = result[command.name.first()];
        if (command.name.size() > 1)
            following += command.name.at(1);
    }
    return result;
}

/// As one word of a POSIX shell, or of fish.
QString quoted(QString text)
{
    return u'\'' + text.replace(u"'"_s, u"'\\''"_s) + u'\'';
}

QString forBash(const std::vector<Completed> &all)
{
    QString cases;
    for (const Completed &command : all) {
        const QString name = command.name.join(u' ');
        cases += u"        %1|%1\\ *) words=%2; files=%3 ;;\n"_s.arg(QString(name).replace(u" "_s, u"\\ "_s),
                                                                     quoted(command.options().join(u' ')),
                                                                     command.takesFiles ? u"yes"_s : u"no"_s);
    }
    const auto first = firstWords(all);
    QString next;
    for (auto it = first.begin(); it != first.end(); ++it) {
        if (!it->isEmpty())
            next += u"        %1) words+=%2 ;;\n"_s.arg(it.key(), quoted(u' ' + it->join(u' ')));
    }
    return uR"(# bash completion for orvelle
_orvelle() {
    local current=${COMP_WORDS[COMP_CWORD]} words='' files=no
    local before="${COMP_WORDS[*]:1:COMP_CWORD-1}"
    case "$before" in
        '') words=%1; files=yes ;;
%2        *) files=yes ;;
    esac
    case "$before" in
%3    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    if [ "$files" = yes ] && [ ${#COMPREPLY[@]} -eq 0 ]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}
complete -F _orvelle orvelle
)"_s.arg(quoted((QStringList(first.keys()) + QStringList{u"--help"_s, u"--version"_s}).join(u' ')), cases, next);
}

QString forZsh(const std::vector<Completed> &all)
{
    QString descriptions;
    QString cases;
    for (const Completed &command : all) {
        const QString name = command.name.join(u' ');
        const QString summary = QString(command.summary).replace(u":"_s, u"\\:"_s);
        if (command.name.size() == 1)
            descriptions += u"        %1\n"_s.arg(quoted(name + u':' + summary));
        cases += u"    (%1|%1\\ *) compadd -- %2%3 ;;\n"_s.arg(QString(name).replace(u" "_s, u"\\ "_s),
                                                               command.options().join(u' '),
                                                               command.takesFiles ? u"; _files"_s : QString());
    }
    const auto first = firstWords(all);
    QString next;
    for (auto it = first.begin(); it != first.end(); ++it) {
        if (!it->isEmpty())
            next += u"    (%1) compadd %2 ;;\n"_s.arg(it.key(), it->join(u' '));
        if (!it->isEmpty() && !descriptions.contains(u'\'' + it.key() + u':'))
            descriptions += u"        %1\n"_s.arg(it.key());
    }
    return uR"(#compdef orvelle
local before="${words[2,CURRENT-1]}"
if (( CURRENT == 2 )); then
    local -a names=(
%1    )
    _describe command names || _files -g '*.ovexport'
    return
fi
case "$before" in
%2esac
case "$before" in
%3    (*) _files ;;
esac
)"_s.arg(descriptions, next, cases);
}

QString forFish(const std::vector<Completed> &all)
{
    QString script = u"# fish completion for orvelle\ncomplete -c orvelle -n __fish_use_subcommand -l help\n"
                     "complete -c orvelle -n __fish_use_subcommand -l version\n"_s;
    const auto first = firstWords(all);
    for (auto it = first.begin(); it != first.end(); ++it) {
        if (std::ranges::none_of(all, [&](const Completed &command) { return command.name == QStringList{it.key()}; }))
            script += u"complete -c orvelle -f -n __fish_use_subcommand -a %1\n"_s.arg(it.key());
    }
    for (const Completed &command : all) {
        const QString condition = command.name.size() == 1
                                      ? u"__fish_use_subcommand"_s
                                      : u"__fish_seen_subcommand_from %1; and not __fish_seen_subcommand_from %2"_s.arg(
                                            command.name.first(), command.name.at(1));
        script += u"complete -c orvelle%1 -n %2 -a %3 -d %4\n"_s.arg(
            command.takesFiles ? QString() : u" -f"_s, quoted(condition), command.name.last(), quoted(command.summary));
        const QString chosen = quoted(u"__fish_seen_subcommand_from "_s + command.name.last());
        for (const QString &option : command.flags + command.valued) {
            script +=
                u"complete -c orvelle -n %1 -%2 %3%4\n"_s.arg(chosen, option.size() == 1 ? u"s"_s : u"l"_s, option,
                                                              command.valued.contains(option) ? u" -r"_s : QString());
        }
    }
    return script;
}

} // namespace

std::optional<QByteArray> completionScript(const QString &shell)
{
    constexpr std::pair<QLatin1StringView, QString (*)(const std::vector<Completed> &)> shells[] = {
        {"bash"_L1, forBash}, {"zsh"_L1, forZsh}, {"fish"_L1, forFish}};
    for (const auto &[name, make] : shells) {
        if (shell == name)
            return make(completedCommands()).toUtf8();
    }
    return std::nullopt;
}

} // namespace orvelle
