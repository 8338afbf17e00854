#pragma once

#include "links/richtext/RichText.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace orvelle {

/// The lists that an RTF document defines, and what they make of a paragraph.
/// Source: RTF specification 1.9.1, "List Tables" and "Bullets and Numbering".
class RtfLists
{
public:
    /// What a paragraph says about the list it is in.
    struct Paragraph {
        int list = 0; ///< \ls; 0 for none
        int level = 0;
        std::optional<ListKind> legacy; ///< \pn
        QString markerText;             ///< \listtext or \pntext
    };

    void addList() { m_lists.append(List()); }
    void addLevel();
    /// Of the last level of the last list, as the next.
    void setNumberFormat(int format);
    void addLevelText(QStringView text);
    void setListId(int id);
    /// The numbers that paragraphs use for lists: each names a list's id first.
    void setOverriddenList(int id) { m_overriddenId = id; }
    void setOverrideNumber(int number) { m_idOfOverride[number] = m_overriddenId; }

    /// Makes `target` a list item where `source` says so.
    void apply(const Paragraph &source, RichParagraph &target) const;

private:
    struct Level {
        int format = 0;
        QString text;
    };
    struct List {
        QList<Level> levels;
    };
    Level *currentLevel();
    const Level *levelOf(const Paragraph &source) const;

    QList<List> m_lists;
    QHash<int, qsizetype> m_listOfId;
    QHash<int, int> m_idOfOverride;
    int m_overriddenId = 0;
};

} // namespace orvelle
