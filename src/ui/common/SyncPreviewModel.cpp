#include "ui/common/SyncPreviewModel.h"

#include "base/DisplayTitle.h"
#include "base/Text.h"
#include "links/LinkColors.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/LinkIconView.h"
#include "ui/common/PlainToolTip.h"
#include "ui/common/SyncSummary.h"

#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QPalette>

#include <algorithm>
#include <array>

namespace orvelle {

namespace {

constexpr int iconSide = 16;
/// Rows of changes carry the section's number, counted from 1, as id; those of
/// copies also the row of their group, counted from 1, above this many bits.
constexpr int groupShift = 8;

struct SectionKind {
    TextKey title;
    const char *symbol;
    const char *color;
    std::array<SyncCategory, 2> categories;
};

const std::array<SectionKind, 4> sectionKinds{{
    {"sync.preview.updated"_text,
     "arrow.triangle.2.circlepath.circle.fill",
     "blue",
     {SyncCategory::UpdatedRemote, SyncCategory::UpdatedLocal}},
    {"sync.preview.added"_text, "plus.circle.fill", "green", {SyncCategory::Added, SyncCategory::Added}},
    {"sync.preview.removed"_text, "minus.circle.fill", "red", {SyncCategory::Removed, SyncCategory::Removed}},
    {"sync.preview.duplicates"_text,
     "exclamationmark.triangle.fill",
     "orange",
     {SyncCategory::Duplicate, SyncCategory::Duplicate}},
}};
constexpr int duplicatesKind = 3;

const SectionKind &kindAt(int kind)
{
    return sectionKinds.at(static_cast<std::size_t>(kind));
}

QIcon sectionIcon(const SectionKind &kind)
{
    const QPalette palette = QGuiApplication::palette();
    const auto color = nsColor(QLatin1StringView(kind.color));
    const QColor shown = color ? toQColor(*color, palette) : palette.color(QPalette::Text);
    return symbolIcon(QLatin1StringView(kind.symbol), readable(shown, palette.color(QPalette::Base),
                                                               palette.color(QPalette::Text), textContrast(palette)));
}

} // namespace

SyncPreviewModel::SyncPreviewModel(SyncAnalysis analysis, bool selectable, QObject *parent)
    : QAbstractItemModel(parent), m_analysis(std::move(analysis)), m_selectable(selectable)
{
    for (int kind = 0; kind < static_cast<int>(sectionKinds.size()); ++kind) {
        Section section{kind, {}};
        const auto &wanted = kindAt(kind).categories;
        for (qsizetype i = 0; kind != duplicatesKind && i < m_analysis.changes.size(); ++i) {
            if (std::find(wanted.begin(), wanted.end(), m_analysis.changes.at(i).category) != wanted.end())
                section.places += i;
        }
        for (qsizetype i = 0; kind == duplicatesKind && i < m_analysis.duplicateGroups.size(); ++i)
            section.places += i;
        if (!section.places.isEmpty())
            m_sections += section;
    }
}

bool SyncPreviewModel::isAnySelected() const
{
    const auto counts = [this](const Section &section) {
        return isOfDuplicates(section) ||
               std::any_of(section.places.begin(), section.places.end(),
                           [this](qsizetype place) { return m_analysis.changes.at(place).isSelected; });
    };
    return std::any_of(m_sections.begin(), m_sections.end(), counts);
}

SyncPreviewModel::Level SyncPreviewModel::levelOf(const QModelIndex &index) const
{
    if (index.internalId() == 0)
        return Level::Section;
    return index.internalId() >> groupShift == 0 ? Level::Change : Level::Copy;
}

const SyncPreviewModel::Section &SyncPreviewModel::sectionOf(const QModelIndex &index) const
{
    const quintptr id = index.internalId() & ((1u << groupShift) - 1);
    return m_sections.at(id == 0 ? index.row() : static_cast<qsizetype>(id) - 1);
}

bool SyncPreviewModel::isOfDuplicates(const Section &section) const
{
    return section.kind == duplicatesKind;
}

/// For a group's row and those below it.
const DuplicateGroup &SyncPreviewModel::groupOf(const QModelIndex &index) const
{
    const quintptr group = index.internalId() >> groupShift;
    const qsizetype row = group == 0 ? index.row() : static_cast<qsizetype>(group) - 1;
    return m_analysis.duplicateGroups.at(sectionOf(index).places.at(row));
}

const LinkItem *SyncPreviewModel::itemOf(const QModelIndex &index) const
{
    const Section &section = sectionOf(index);
    switch (levelOf(index)) {
    case Level::Section:
        return nullptr;
    case Level::Copy:
        return &groupOf(index).instances.at(index.row());
    case Level::Change:
        break;
    }
    if (isOfDuplicates(section)) {
        const DuplicateGroup &group = groupOf(index);
        return group.instances.isEmpty() ? nullptr : &group.instances.at(group.keepIndex);
    }
    const SyncChange &change = m_analysis.changes.at(section.places.at(index.row()));
    const bool fromThere = change.importedLink && change.category != SyncCategory::UpdatedLocal;
    if (fromThere)
        return &*change.importedLink;
    return change.localLink ? &*change.localLink : nullptr;
}

QModelIndex SyncPreviewModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column < 0 || column >= ColumnCount || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, column, quintptr(0));
    if (levelOf(parent) == Level::Section)
        return createIndex(row, column, quintptr(parent.row()) + 1);
    return createIndex(row, column, parent.internalId() | ((quintptr(parent.row()) + 1) << groupShift));
}

QModelIndex SyncPreviewModel::parent(const QModelIndex &index) const
{
    if (!index.isValid() || levelOf(index) == Level::Section)
        return {};
    const quintptr section = index.internalId() & ((1u << groupShift) - 1);
    if (levelOf(index) == Level::Change)
        return createIndex(static_cast<int>(section) - 1, 0, quintptr(0));
    return createIndex(static_cast<int>(index.internalId() >> groupShift) - 1, 0, section);
}

int SyncPreviewModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_sections.size());
    if (parent.column() != 0 || levelOf(parent) == Level::Copy)
        return 0;
    const Section &section = sectionOf(parent);
    if (levelOf(parent) == Level::Section)
        return static_cast<int>(section.places.size());
    return isOfDuplicates(section) ? static_cast<int>(groupOf(parent).instances.size()) : 0;
}

int SyncPreviewModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

bool SyncPreviewModel::isCheckable(const QModelIndex &index) const
{
    if (!m_selectable || index.column() != ItemColumn)
        return false;
    return levelOf(index) == Level::Copy || !isOfDuplicates(sectionOf(index));
}

Qt::ItemFlags SyncPreviewModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    if (index.isValid() && isCheckable(index))
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QString SyncPreviewModel::title(const QModelIndex &index) const
{
    if (const LinkItem *item = itemOf(index))
        return displayTitle(item->name);
    return levelOf(index) == Level::Section ? text(kindAt(sectionOf(index).kind).title) : QString();
}

QString SyncPreviewModel::detail(const QModelIndex &index) const
{
    const Section &section = sectionOf(index);
    switch (levelOf(index)) {
    case Level::Section:
        return QLocale().toString(section.places.size());
    case Level::Copy:
        return index.row() == groupOf(index).keepIndex ? text("sync.preview.kept"_text)
                                                       : text("sync.preview.dropped"_text);
    case Level::Change:
        break;
    }
    if (isOfDuplicates(section))
        return text("sync.preview.duplicateInstances"_text) + QChar(QChar::Nbsp) +
               QLocale().toString(groupOf(index).instances.size());
    const SyncChange &change = m_analysis.changes.at(section.places.at(index.row()));
    const bool updated =
        change.category == SyncCategory::UpdatedRemote || change.category == SyncCategory::UpdatedLocal;
    return updated ? syncDetailsText(change) : QString();
}

QVariant SyncPreviewModel::decoration(const QModelIndex &index) const
{
    if (levelOf(index) == Level::Section)
        return sectionIcon(kindAt(sectionOf(index).kind));
    const LinkItem *item = itemOf(index);
    return item ? QVariant(linkRowPixmap(*item, iconSide, QGuiApplication::palette(), qGuiApp->devicePixelRatio()))
                : QVariant();
}

Qt::CheckState SyncPreviewModel::checkState(const QModelIndex &index) const
{
    const Section &section = sectionOf(index);
    if (levelOf(index) == Level::Copy)
        return index.row() == groupOf(index).keepIndex ? Qt::Checked : Qt::Unchecked;
    const auto isSelected = [this](qsizetype place) { return m_analysis.changes.at(place).isSelected; };
    if (levelOf(index) == Level::Change)
        return isSelected(section.places.at(index.row())) ? Qt::Checked : Qt::Unchecked;
    const auto selected = std::count_if(section.places.begin(), section.places.end(), isSelected);
    if (selected == 0)
        return Qt::Unchecked;
    return selected == section.places.size() ? Qt::Checked : Qt::PartiallyChecked;
}

QVariant SyncPreviewModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const bool isItem = index.column() == ItemColumn;
    switch (role) {
    case Qt::DisplayRole:
        return isItem ? title(index) : detail(index);
    case Qt::DecorationRole:
        return isItem ? decoration(index) : QVariant();
    case Qt::CheckStateRole:
        return isCheckable(index) ? QVariant(checkState(index)) : QVariant();
    case Qt::ToolTipRole:
        if (const LinkItem *item = itemOf(index); item && !item->path.isEmpty())
            return plainToolTip(item->path);
        return {};
    case Qt::FontRole: {
        QFont font = QGuiApplication::font();
        font.setBold(isItem && levelOf(index) == Level::Section);
        return font;
    }
    default:
        return {};
    }
}

bool SyncPreviewModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !index.isValid() || !isCheckable(index))
        return false;
    const bool selected = value.toInt() == Qt::Checked;
    const Section section = sectionOf(index);
    if (levelOf(index) == Level::Copy) {
        // One of them has to stay: ticking another is the way to give this up.
        if (!selected)
            return false;
        m_analysis.duplicateGroups[section.places.at(index.parent().row())].keepIndex = index.row();
    } else if (levelOf(index) == Level::Change) {
        m_analysis.changes[section.places.at(index.row())].isSelected = selected;
    } else {
        select(section, selected);
    }
    announce(index);
    return true;
}

void SyncPreviewModel::select(const Section &section, bool selected)
{
    for (const qsizetype place : section.places)
        m_analysis.changes[place].isSelected = selected;
}

/// The rows around and below a change of one.
void SyncPreviewModel::announce(const QModelIndex &changed)
{
    const QModelIndex above = changed.parent();
    const int count = rowCount(above);
    emit dataChanged(index(0, 0, above), index(count - 1, ColumnCount - 1, above));
    if (above.isValid())
        emit dataChanged(above, above.siblingAtColumn(ColumnCount - 1));
    if (const int below = rowCount(changed); below > 0)
        emit dataChanged(index(0, 0, changed), index(below - 1, ColumnCount - 1, changed));
}

} // namespace orvelle
