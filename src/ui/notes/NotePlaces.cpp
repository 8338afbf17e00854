#include "ui/notes/NotePlaces.h"

#include "links/LinkStore.h"
#include "services/DebugModeManager.h"

#include <QSet>

namespace orvelle {

namespace {

/// A list of ids, each followed by its geometry; closed last is first.
QString baseKey()
{
    return QStringLiteral("NoteEditorPlaces");
}

void collectNotes(const LinkList &links, QSet<QByteArray> &ids)
{
    for (const LinkItem &item : links) {
        if (item.type == LinkType::Note)
            ids.insert(item.stableId.toUtf8());
        else if (item.children)
            collectNotes(*item.children, ids);
    }
}

} // namespace

std::optional<QByteArray> NotePlaces::find(const QString &stableId) const
{
    const auto places = m_services.defaults.get<QList<QByteArray>>(m_services.debugMode.key(baseKey()));
    for (qsizetype i = 0; places && i + 1 < places->size(); i += 2) {
        if ((*places)[i] == stableId.toUtf8())
            return (*places)[i + 1];
    }
    return std::nullopt;
}

void NotePlaces::remember(const QString &stableId, const QByteArray &geometry)
{
    const QString key = m_services.debugMode.key(baseKey());
    const auto before = m_services.defaults.get<QList<QByteArray>>(key).value_or(QList<QByteArray>());
    QSet<QByteArray> notes;
    collectNotes(m_services.links.links(), notes);
    QList<QByteArray> places;
    if (notes.contains(stableId.toUtf8()))
        places = {stableId.toUtf8(), geometry};
    for (qsizetype i = 0; i + 1 < before.size() && places.size() < 2 * maxPlaces; i += 2) {
        if (before[i] != stableId.toUtf8() && notes.contains(before[i]))
            places += {before[i], before[i + 1]};
    }
    if (places == before)
        return;
    // A place that could not be kept is no reason to trouble anybody.
    static_cast<void>(m_services.defaults.write(key, places));
}

} // namespace orvelle
