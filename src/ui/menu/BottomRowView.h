#pragma once

#include "base/Text.h"
#include "menubar/Menu.h"

#include <QFontMetrics>
#include <QList>
#include <QRect>

namespace orvelle {

/// The three buttons at the end of the main menu: what they say and do, and
/// where they stand in a row of a given width.
class BottomRowView
{
public:
    static constexpr int buttonCount = 3;
    static constexpr int minimumWidth = 225;
    static constexpr int minimumHeight = 30;

    struct Button {
        QRect rect;
        QString label; ///< the short form where the long one has no room
    };

    /// The buttons in `row`, quick add first in reading direction. Labels that
    /// are too long even in their short form are cut.
    static QList<Button> buttons(const QRect &row, const QFontMetrics &font, bool rightToLeft);
    /// The width at which no label needs to be cut.
    static int preferredWidth(const QFontMetrics &font);

    static QString name(int button); ///< the long label
    static QString symbol(int button);
    static MenuAction action(int button);

    /// The picture and the gaps around it and the label.
    static constexpr int iconSide = 16;
    static constexpr int padding = 9;
    static constexpr int iconGap = 6;
};

} // namespace orvelle
