#pragma once

#include "app/cli/CommandContext.h"
#include "app/cli/CommandResult.h"

#include <QHash>
#include <QStringList>

#include <span>
#include <variant>

namespace orvelle {

/// Where a command can run.
enum class CommandPlace {
    Anywhere,        ///< in the running application if there is one, else on its own
    RunningOnly,     ///< only in the running application
    StartsWhenNeeded ///< in the running application, which is started if there is none
};

struct CommandArguments {
    QStringList positional;
    QHash<QString, QString> options; ///< by name without dashes; flags have an empty value

    bool has(const QString &option) const { return options.contains(option); }
};

/// A row of the table of commands.
struct Command {
    const char *name;    ///< one or two words ("defaults read")
    const char *usage;   ///< what follows the name
    const char *summary; ///< one sentence
    int minPositional;
    int maxPositional;
    const char *flags;  ///< options without a value, blank-separated
    const char *valued; ///< options with a value, blank-separated; of one letter ("-o") or more ("--to")
    CommandPlace place;
    CommandResult (*run)(const CommandArguments &, CommandContext &);
    bool onlyOnce = false;   ///< done twice, it does something else
    bool readsInput = false; ///< a lone dash as its last value stands for standard input
    /// In place of `run`, for what takes time. What it needs of the context
    /// outlives the answer, but the context itself does not.
    void (*begin)(const CommandArguments &, CommandContext &, const CommandAnswer &) = nullptr;
};

std::span<const Command> commands();

/// Start the application, or wake it when it runs.
struct PlainStart {
    bool atLogin = false; ///< nobody asked for it: one that runs is left alone

    friend bool operator==(const PlainStart &, const PlainStart &) = default;
};
/// The same, with documents to open (absolute paths).
struct OpenFiles {
    QStringList paths;
};
struct CommandCall {
    const Command *command = nullptr;
    CommandArguments arguments;
};

void runCommand(const CommandCall &call, CommandContext &context, const CommandAnswer &answer);

/// What the arguments mean, or the answer that can be given at once (help,
/// version, wrong usage).
using ParsedCommandLine = std::variant<PlainStart, OpenFiles, CommandCall, CommandResult>;

/// `arguments` without the program's name. Relative file names are taken from
/// `workingDirectory`.
ParsedCommandLine parseCommandLine(const QStringList &arguments, const QString &workingDirectory);

QString helpText();

} // namespace orvelle
