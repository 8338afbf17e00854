#include "links/NewNote.h"

#include "base/Text.h"
#include "base/Uuid.h"
#include "platform/UserDefaults.h"

namespace orvelle {

namespace {

QString colorSetting()
{
    return QStringLiteral("DefaultNoteColor");
}

} // namespace

QString newNoteColor(const UserDefaults &defaults)
{
    return defaults.get<QString>(colorSetting()).value_or(QStringLiteral("yellow"));
}

bool setNewNoteColor(UserDefaults &defaults, const QString &colorKey)
{
    return defaults.write(colorSetting(), colorKey).hasValue();
}

LinkItem newNote(const UserDefaults &defaults, Timestamp now)
{
    LinkItem note = LinkItem::make(text("note.defaultName"_text), QStringLiteral("quicknote://") + newUuidText(),
                                   LinkType::Note, now);
    note.customIconColor = newNoteColor(defaults);
    return note;
}

} // namespace orvelle
