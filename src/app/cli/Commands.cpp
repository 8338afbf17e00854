#include "app/cli/CommandLine.h"
#include "app/cli/DefaultsCommands.h"
#include "app/cli/LinkCommands.h"
#include "app/cli/ShellCommands.h"

namespace orvelle {

namespace {

constexpr Command table[] = {
    {"toggle", "", "Open or close the menu at the pointer.", 0, 0, "", "", CommandPlace::RunningOnly, runToggle},
    {"settings", "", "Open the settings window.", 0, 0, "", "", CommandPlace::StartsWhenNeeded, runSettings},
    {"quit", "", "End the running Orvelle without asking.", 0, 0, "", "", CommandPlace::RunningOnly, runQuit},
    {"links", "[--json]", "Print the tree; as JSON, exactly as it is stored.", 0, 0, "json", "", CommandPlace::Anywhere,
     runLinks},
    {"menu", "[--json]", "Print the main menu as it would open now.", 0, 0, "json", "", CommandPlace::Anywhere,
     runMenu},
    {"add", "ADDRESS [--name NAME] [--group ID]", "Add a web or network address, a file or a folder.", 1, 1, "",
     "name group", CommandPlace::Anywhere, runAdd, true},
    {"open", "ID", "Open a link by its stable or run id.", 1, 1, "", "", CommandPlace::Anywhere, runOpen, true},
    {"undo", "", "Restore the tree from before the last destructive step.", 0, 0, "", "", CommandPlace::Anywhere,
     runUndo, true},
    {"snapshots", "", "List the kept copies of the tree, newest first.", 0, 0, "", "", CommandPlace::Anywhere,
     runSnapshots},
    {"snapshots restore", "NAME", "Make a kept copy the tree again.", 1, 1, "", "", CommandPlace::Anywhere,
     runSnapshotsRestore},
    {"defaults list", "", "List the settings: key and type a line.", 0, 0, "", "", CommandPlace::Anywhere,
     runDefaultsList},
    {"defaults read", "KEY", "Print a setting.", 1, 1, "", "", CommandPlace::Anywhere, runDefaultsRead},
    {"defaults write", "KEY TYPE VALUE", "Store a setting; TYPE is bool, int, double, string, data, date or strings.",
     3, 3, "", "", CommandPlace::Anywhere, runDefaultsWrite},
    {"defaults delete", "KEY", "Remove a setting.", 1, 1, "", "", CommandPlace::Anywhere, runDefaultsDelete},
    {"log", "", "Show Orvelle's recent log lines.", 0, 0, "", "", CommandPlace::Anywhere, runLog},
};

} // namespace

std::span<const Command> commands()
{
    return table;
}

} // namespace orvelle
