#include "links/LocalPrograms.h"

#include "base/AddressSchemes.h"
#include "links/exchange/ForeignLinks.h"

#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QUrl>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 headBytes = 4096;

/// Suffixes of files that are run when they are opened, here or where another
/// system's programs are run by a layer for them.
constexpr std::array programSuffixes{
    "appimage"_L1, "bash"_L1, "bat"_L1,  "bin"_L1, "class"_L1, "cmd"_L1,  "com"_L1,        "command"_L1,
    "cpl"_L1,      "csh"_L1,  "deb"_L1,  "dll"_L1, "exe"_L1,   "fish"_L1, "flatpakref"_L1, "flatpak"_L1,
    "hta"_L1,      "jar"_L1,  "jnlp"_L1, "js"_L1,  "jse"_L1,   "ksh"_L1,  "lnk"_L1,        "lua"_L1,
    "msi"_L1,      "out"_L1,  "php"_L1,  "pif"_L1, "pl"_L1,    "ps1"_L1,  "py"_L1,         "pyc"_L1,
    "pyw"_L1,      "pyz"_L1,  "rb"_L1,   "reg"_L1, "rpm"_L1,   "run"_L1,  "scr"_L1,        "sh"_L1,
    "snap"_L1,     "tcl"_L1,  "url"_L1,  "vbe"_L1, "vbs"_L1,   "wsf"_L1,  "zsh"_L1};

/// Addresses of shares that file managers open.
constexpr std::array shareSchemes{"smb"_L1, "sftp"_L1, "ftp"_L1, "ftps"_L1, "nfs"_L1, "afp"_L1,
                                  "dav"_L1, "davs"_L1, "ssh"_L1, "fish"_L1, "cifs"_L1};

template<typename Texts>
bool holds(const Texts &texts, QStringView text)
{
    return std::ranges::any_of(texts,
                               [text](QLatin1StringView each) { return text.compare(each, Qt::CaseInsensitive) == 0; });
}

std::optional<ProgramKind> kindOfName(const QString &fileName)
{
    // Blanks and dots behind a suffix are overlooked by some systems.
    QStringView name = fileName;
    while (!name.isEmpty() && (name.back() == u'.' || name.back().isSpace()))
        name.chop(1);
    const QStringView suffix = name.mid(name.lastIndexOf(u'.') + 1);
    if (suffix.size() == name.size())
        return std::nullopt;
    if (suffix.compare(u"desktop", Qt::CaseInsensitive) == 0)
        return ProgramKind::DesktopEntry;
    return holds(programSuffixes, suffix) ? std::optional(ProgramKind::ProgramFile) : std::nullopt;
}

std::optional<ProgramKind> kindOfHead(const QByteArray &head)
{
    if (head.startsWith("#!") || head.startsWith("\xEF\xBB\xBF#!"))
        return ProgramKind::Script;
    if (head.startsWith("\x7f"
                        "ELF") ||
        head.startsWith("MZ"))
        return ProgramKind::Executable;
    // With comments before it, as the format allows.
    return head.contains("[Desktop Entry]") && head.contains("Exec") ? std::optional(ProgramKind::DesktopEntry)
                                                                     : std::nullopt;
}

/// Disks of other systems mark every file as executable, also pictures. Text
/// and what nobody knows can be run by a shell or the kernel.
bool couldRun(const QString &path)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    return type.isDefault() || type.name().startsWith(u"text/") || type.inherits(u"application/x-executable"_s) ||
           type.inherits(u"application/x-shellscript"_s);
}

/// The kernel goes through what stands before "..", GIO leaves both out.
std::optional<LocalProgram> programAmong(const QStringList &paths)
{
    for (const QString &path : paths) {
        for (const QString &meant : {path, QDir::cleanPath(path)}) {
            if (const auto kind = programAt(meant))
                return LocalProgram{meant, *kind};
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<ProgramKind> programAt(const QString &path)
{
    const QFileInfo named(path);
    const QFileInfo file(named.canonicalFilePath()); // empty where there is nothing
    if (file.filePath().isEmpty() || file.isDir())
        return std::nullopt;
    if (const auto kind = kindOfHead(headOfPlainFile(file.filePath(), headBytes)))
        return kind;
    for (const QString &name : {named.fileName(), file.fileName()}) {
        if (const auto kind = kindOfName(name))
            return kind;
    }
    return file.isFile() && file.isExecutable() && couldRun(file.filePath()) ? std::optional(ProgramKind::Executable)
                                                                             : std::nullopt;
}

QStringList localPathsOf(const QString &address)
{
    const QUrl url(address.trimmed(), QUrl::TolerantMode);
    if (url.scheme() != u"file")
        return {};
    QString path = url.path(QUrl::FullyDecoded);
    while (path.startsWith(u"//"))
        path.remove(0, 1);
    QStringList paths{path};
    if (url.hasQuery())
        paths += path + u'?' + url.query(QUrl::FullyDecoded);
    if (url.hasFragment())
        paths += path + u'#' + url.fragment(QUrl::FullyDecoded);
    return paths;
}

std::optional<LocalProgram> programBehind(LinkType type, const QString &target)
{
    if (type != LinkType::Url)
        return programAmong({target});
    if (auto local = programAmong(localPathsOf(target)))
        return local;
    const QUrl url(target.trimmed(), QUrl::TolerantMode);
    if (!holds(shareSchemes, url.scheme()) && !isFileViewScheme(url.scheme()))
        return std::nullopt;
    return kindOfName(url.fileName(QUrl::FullyDecoded)) ? std::optional(LocalProgram{target, ProgramKind::OnShare})
                                                        : std::nullopt;
}

} // namespace orvelle
