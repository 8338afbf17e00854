#pragma once

#include "links/LinkItem.h"

#include <QStringList>

#include <optional>

namespace orvelle {

/// What kind of program an address leads to.
enum class ProgramKind {
    Executable,   ///< a binary, or a file marked as executable that is no document
    Script,       ///< begins with "#!"
    DesktopEntry, ///< starts what its Exec line says
    ProgramFile,  ///< of a kind that an interpreter or installer runs: .jar, .msi, .AppImage, ...
    OnShare,      ///< the same by its name, on a server or in a view of the file manager
};

struct LocalProgram {
    QString file; ///< the path, or the address where there is none
    ProgramKind kind = ProgramKind::Executable;
    friend bool operator==(const LocalProgram &, const LocalProgram &) = default;
};

/// What kind of program the file at `path` is; absent for documents, folders
/// and what does not exist. Looks at the file, and at what a link leads to: may
/// wait for a disk. Any thread.
std::optional<ProgramKind> programAt(const QString &path);

/// The program that opening the item would start. `target` is what is opened:
/// the path of a file or folder, else the address. As programAt().
std::optional<LocalProgram> programBehind(LinkType type, const QString &target);

/// The paths of this machine that a `file:` address can mean to those who open
/// it: some read a query as a part of the name, and most overlook the host.
QStringList localPathsOf(const QString &address);

} // namespace orvelle
