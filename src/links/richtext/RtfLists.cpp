#include "links/richtext/RtfLists.h"

#include <algorithm>

namespace orvelle {

namespace {

constexpr int bulletFormat = 23;
constexpr int noNumberFormat = 255;
/// A marker is looked for in the text of a level at each item of the list.
constexpr qsizetype maxLevelText = 64;

bool containsAny(QStringView text, QStringView characters)
{
    return std::ranges::any_of(text, [characters](QChar c) { return characters.contains(c); });
}

/// Whether the marker is a box, and whether the box is ticked.
std::optional<bool> boxOf(QStringView marker)
{
    if (containsAny(marker, u"\u2611\u2612\u2713\u2714\u2705"))
        return true;
    if (containsAny(marker, u"\u2610\u25a1"))
        return false;
    return std::nullopt;
}

ListKind kindOfMarker(QStringView marker)
{
    const bool counts = std::ranges::any_of(marker, [](QChar c) { return c.isLetterOrNumber(); });
    return counts ? ListKind::Numbered : ListKind::Bullet;
}

} // namespace

void RtfLists::addLevel()
{
    if (!m_lists.isEmpty() && m_lists.back().levels.size() <= RichParagraph::maxLevel)
        m_lists.back().levels.append(Level());
}

RtfLists::Level *RtfLists::currentLevel()
{
    return m_lists.isEmpty() || m_lists.back().levels.isEmpty() ? nullptr : &m_lists.back().levels.back();
}

void RtfLists::setNumberFormat(int format)
{
    if (Level *level = currentLevel())
        level->format = format;
}

void RtfLists::addLevelText(QStringView text)
{
    if (Level *level = currentLevel())
        level->text += text.left(maxLevelText - level->text.size());
}

void RtfLists::setListId(int id)
{
    if (!m_lists.isEmpty())
        m_listOfId[id] = m_lists.size() - 1;
}

const RtfLists::Level *RtfLists::levelOf(const Paragraph &source) const
{
    const auto id = m_idOfOverride.constFind(source.list);
    if (id == m_idOfOverride.constEnd())
        return nullptr;
    const auto list = m_listOfId.constFind(id.value());
    if (list == m_listOfId.constEnd() || m_lists[list.value()].levels.isEmpty())
        return nullptr;
    const QList<Level> &levels = m_lists[list.value()].levels;
    return &levels[std::clamp<qsizetype>(source.level, 0, levels.size() - 1)];
}

void RtfLists::apply(const Paragraph &source, RichParagraph &target) const
{
    const Level *level = source.list > 0 ? levelOf(source) : nullptr;
    const bool marked = !source.markerText.isEmpty();
    if (source.list <= 0 && !source.legacy && !marked)
        return;
    if (level && level->format == noNumberFormat && !marked)
        return;
    ListKind kind = kindOfMarker(source.markerText);
    if (level && level->format != noNumberFormat)
        kind = level->format == bulletFormat ? ListKind::Bullet : ListKind::Numbered;
    else if (source.legacy)
        kind = *source.legacy;
    std::optional<bool> box = boxOf(source.markerText);
    if (!box && level && kind == ListKind::Bullet)
        box = boxOf(level->text);
    target.setList(box ? ListKind::Check : kind, source.level, box.value_or(false));
}

} // namespace orvelle
