#include "app/cli/BookmarkCommands.h"
#include "app/cli/CommandLine.h"
#include "app/cli/DefaultsCommands.h"
#include "app/cli/EditCommands.h"
#include "app/cli/ExchangeCommands.h"
#include "app/cli/LinkCommands.h"
#include "app/cli/MergeCommand.h"
#include "app/cli/ShellCommands.h"
#include "app/cli/SyncCommands.h"

namespace orvelle {

namespace {

constexpr Command table[] = {
    {"toggle", "", "Open or close the menu at the pointer.", 0, 0, "", "", CommandPlace::RunningOnly, runToggle},
    {"settings", "", "Open the settings window.", 0, 0, "", "", CommandPlace::StartsWhenNeeded, runSettings},
    {"quick-add", "[ADDRESS]", "Open the panel that adds a link, with an address or path filled in.", 0, 1, "", "",
     CommandPlace::StartsWhenNeeded, runQuickAdd},
    {"quit", "", "End the running Orvelle; it asks only before changes are lost.", 0, 0, "", "",
     CommandPlace::RunningOnly, runQuit},
    {"links", "[--json]", "Print the tree; as JSON, exactly as it is stored.", 0, 0, "json", "", CommandPlace::Anywhere,
     runLinks},
    {"menu", "[--json]", "Print the main menu as it would open now.", 0, 0, "json", "", CommandPlace::Anywhere,
     runMenu},
    {"add", "ADDRESS [--name NAME] [--group ID]", "Add a web or network address, a file or a folder.", 1, 1, "",
     "name group", CommandPlace::Anywhere, runAdd, true},
    {"move", "ID --to ID|root [--at N]", "Move an item into a group, or to the top level; N counts from 0.", 1, 1, "",
     "to at", CommandPlace::Anywhere, runMove},
    {"indent", "ID", "Move an item into the group right above it.", 1, 1, "", "", CommandPlace::Anywhere, runIndent,
     true},
    {"outdent", "ID", "Move an item out of its group, to right after it.", 1, 1, "", "", CommandPlace::Anywhere,
     runOutdent, true},
    {"sort", "ID", "Sort a group's members by name.", 1, 1, "", "", CommandPlace::Anywhere, runSort},
    {"remove", "ID", "Remove an item, and what is in it; undo brings it back.", 1, 1, "", "", CommandPlace::Anywhere,
     runRemove, true},
    {"update", "ID [--name N] [--path P] [--icon S] [--color K]",
     "Change an item; an empty icon or colour gives it the usual one.", 1, 1, "", "name path icon color",
     CommandPlace::Anywhere, runUpdate},
    {"open", "ID", "Open a link by its stable or run id.", 1, 1, "", "", CommandPlace::Anywhere, runOpen, true},
    {"undo", "", "Restore the tree from before the last destructive step.", 0, 0, "", "", CommandPlace::Anywhere,
     runUndo, true},
    {"snapshots", "", "List the kept copies of the tree, newest first.", 0, 0, "", "", CommandPlace::Anywhere,
     runSnapshots},
    {"snapshots restore", "NAME", "Make a kept copy the tree again.", 1, 1, "", "", CommandPlace::Anywhere,
     runSnapshotsRestore},
    {"export", "FILE", "Write the links and settings to a document; - prints it.", 1, 1, "", "", CommandPlace::Anywhere,
     nullptr, false, false, beginExport},
    {"import", "FILE --mode replace|merge|sync [--apply] [--json]",
     "Take in a document; sync only tells what it would change, unless it is to apply that.", 1, 1, "json apply",
     "mode", CommandPlace::Anywhere, nullptr, true, false, beginImport},
    {"verify", "FILE", "Compare a document's checksum with its links.", 1, 1, "", "", CommandPlace::Anywhere, nullptr,
     false, false, beginVerify},
    {"merge", "LOCAL REMOTE -o OUT", "Merge two documents as a synchronisation does; an OUT of - prints the result.", 2,
     2, "", "o", CommandPlace::Anywhere, nullptr, false, false, beginMerge},
    {"sync status", "[--json]", "Tell where the links are kept in step with other machines, and how that goes.", 0, 0,
     "json", "", CommandPlace::Anywhere, runSyncStatus},
    {"sync now", "[--json]", "Read, merge and write the shared document now.", 0, 0, "json", "", CommandPlace::Anywhere,
     nullptr, false, false, beginSyncNow},
    {"sync configure",
     "--folder PATH | --webdav URL --user NAME [--password -] [--use-existing | --create-new] [--json]",
     "Choose the place of the shared document and begin; the password is read from standard input.", 0, 0,
     "use-existing create-new json", "folder webdav user password", CommandPlace::Anywhere, nullptr, true, true,
     beginSyncConfigure},
    {"sync disable", "[--json]", "Stop synchronising; the shared document stays where it is.", 0, 0, "json", "",
     CommandPlace::Anywhere, nullptr, false, false, beginSyncDisable},
    {"import-bookmarks", "FILE [--json]", "Add the bookmarks of a browser (an HTML file) to the end of the links.", 1,
     1, "json", "", CommandPlace::Anywhere, nullptr, true, false, beginImportBookmarks},
    {"export-bookmarks", "FILE", "Write the links as a bookmark file for browsers; - prints it.", 1, 1, "", "",
     CommandPlace::Anywhere, nullptr, false, false, beginExportBookmarks},
    {"import-links", "FOLDER [--json]", "Add the links of a folder of .desktop, .url and .webloc files.", 1, 1, "json",
     "", CommandPlace::Anywhere, nullptr, true, false, beginImportLinks},
    {"defaults list", "", "List the settings: key and type a line.", 0, 0, "", "", CommandPlace::Anywhere,
     runDefaultsList},
    {"defaults read", "KEY", "Print a setting.", 1, 1, "", "", CommandPlace::Anywhere, runDefaultsRead},
    {"defaults write", "KEY TYPE VALUE",
     "Store a setting; TYPE is bool, int, double, string, data, date or strings; a VALUE of - is read from standard "
     "input.",
     3, 3, "", "", CommandPlace::Anywhere, runDefaultsWrite, false, true},
    {"defaults delete", "KEY", "Remove a setting.", 1, 1, "", "", CommandPlace::Anywhere, runDefaultsDelete},
    {"log", "", "Show Orvelle's recent log lines.", 0, 0, "", "", CommandPlace::Anywhere, runLog},
};

} // namespace

std::span<const Command> commands()
{
    return table;
}

} // namespace orvelle
