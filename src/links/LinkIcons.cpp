#include "links/LinkIcons.h"

namespace orvelle {

namespace {

constexpr IconChoice groupTable[] = {
    {"icon.folder"_text, "folder.fill"},
    {"icon.star"_text, "star.fill"},
    {"icon.heart"_text, "heart.fill"},
    {"icon.bookmark"_text, "bookmark.fill"},
    {"icon.tag"_text, "tag.fill"},
    {"icon.flag"_text, "flag.fill"},
    {"icon.bolt"_text, "bolt.fill"},
    {"icon.flame"_text, "flame.fill"},
    {"icon.globe"_text, "globe"},
    {"icon.house"_text, "house.fill"},
    {"icon.person"_text, "person.fill"},
    {"icon.gear"_text, "gearshape.fill"},
    {"icon.code"_text, "chevron.left.forwardslash.chevron.right"},
    {"icon.terminal"_text, "terminal.fill"},
    {"icon.book"_text, "book.fill"},
    {"icon.photo"_text, "photo.fill"},
    {"icon.music"_text, "music.note"},
    {"icon.film"_text, "film"},
    {"icon.game"_text, "gamecontroller.fill"},
    {"icon.accounting"_text, "banknote.fill"},
    {"icon.cup"_text, "cup.and.saucer.fill"},
    {"icon.cart"_text, "cart.fill"},
    {"icon.briefcase"_text, "briefcase.fill"},
    {"icon.hammer"_text, "hammer.fill"},
    {"icon.paintbrush"_text, "paintbrush.fill"},
    {"icon.scissors"_text, "scissors"},
    {"icon.gift"_text, "gift.fill"},
    {"icon.airplane"_text, "airplane"},
    {"icon.car"_text, "car.fill"},
    {"icon.graduationcap"_text, "graduationcap.fill"},
    {"icon.stethoscope"_text, "stethoscope"},
    {"icon.wrench"_text, "wrench.and.screwdriver.fill"},
    {"icon.archivebox"_text, "archivebox.fill"},
    {"icon.tray"_text, "tray.full.fill"},
    {"icon.paperclip"_text, "paperclip"},
    {"icon.server"_text, "server.rack"},
    {"icon.work"_text, "laptopcomputer"},
    {"icon.sport"_text, "figure.run"},
    {"icon.at"_text, "at"},
    {"icon.cloud"_text, "cloud.fill"},
    {"icon.soccer"_text, "soccerball"},
    {"icon.wineglass"_text, "wineglass.fill"},
    {"icon.tshirt"_text, "tshirt.fill"},
    {"icon.diamond"_text, "diamond.fill"},
    {"icon.pawprint"_text, "pawprint.fill"},
    {"icon.building"_text, "building.2.fill"},
    {"icon.camera"_text, "camera.fill"},
    {"icon.dumbbell"_text, "dumbbell.fill"},
};

constexpr IconChoice networkTable[] = {
    {"icon.networkDrive"_text, "externaldrive.connected.to.line.below.fill"},
    {"icon.server"_text, "server.rack"},
    {"icon.cloud"_text, "cloud.fill"},
    {"icon.network"_text, "network"},
    {"icon.at"_text, "at"},
    {"icon.lock"_text, "lock.fill"},
    {"icon.desktopcomputer"_text, "desktopcomputer"},
    {"icon.externaldrive"_text, "externaldrive.fill"},
};

constexpr IconChoice noteTable[] = {
    {"icon.note"_text, "note.text"},
    {"icon.document"_text, "doc.text.fill"},
    {"icon.plaintext"_text, "doc.plaintext.fill"},
    {"icon.checklist"_text, "checklist"},
    {"icon.list"_text, "list.bullet.rectangle.fill"},
};

struct SchemeLabel {
    const char *prefix;
    TextKey label;
};

constexpr SchemeLabel schemeTable[] = {
    {"smb://", "type.smb"_text},    {"afp://", "type.afp"_text},  {"ftp://", "type.ftp"_text},
    {"ftps://", "type.ftp"_text},   {"nfs://", "type.nfs"_text},  {"vnc://", "type.vnc"_text},
    {"mailto:", "type.email"_text}, {"http://", "type.web"_text}, {"https://", "type.web"_text},
};

TextKey addressLabel(const QString &address)
{
    const QString lowered = address.toLower();
    for (const SchemeLabel &scheme : schemeTable) {
        if (lowered.startsWith(QLatin1StringView(scheme.prefix)))
            return scheme.label;
    }
    return "type.url"_text;
}

} // namespace

std::span<const IconChoice> groupIcons()
{
    return groupTable;
}

std::span<const IconChoice> networkIcons()
{
    return networkTable;
}

std::span<const IconChoice> noteIcons()
{
    return noteTable;
}

TextKey kindLabel(const LinkItem &item)
{
    switch (item.type) {
    case LinkType::File:
        return "type.file"_text;
    case LinkType::Folder:
        return "type.folder"_text;
    case LinkType::Url:
        return addressLabel(item.path);
    case LinkType::Group:
        return "type.group"_text;
    case LinkType::Note:
        return "type.note"_text;
    }
    Q_UNREACHABLE();
}

} // namespace orvelle
