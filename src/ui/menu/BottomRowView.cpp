#include "ui/menu/BottomRowView.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace orvelle {
namespace {

struct ButtonKind {
    TextKey label;
    TextKey shortLabel;
    const char *symbol;
    MenuAction::Kind action;
};

constexpr std::array<ButtonKind, BottomRowView::buttonCount> kinds = {{
    {"menu.quickAdd"_text, "menu.newLinkShort"_text, "plus.circle.fill", MenuAction::Kind::QuickAdd},
    {"menu.quickNote"_text, "menu.newNoteShort"_text, "note.text.badge.plus", MenuAction::Kind::QuickNote},
    {"menu.settings"_text, "menu.settings"_text, "gearshape.fill", MenuAction::Kind::OpenSettings},
}};

using Widths = std::array<int, BottomRowView::buttonCount>;

const ButtonKind &kind(int button)
{
    return kinds.at(static_cast<std::size_t>(button));
}

Widths naturalWidths(const QFontMetrics &font, TextKey ButtonKind::*label)
{
    // One more pixel, as rounding the shared room may take one.
    constexpr int besideLabel = 1 + 2 * BottomRowView::padding + BottomRowView::iconSide + BottomRowView::iconGap;
    Widths widths = {};
    std::ranges::transform(kinds, widths.begin(), [&](const ButtonKind &each) {
        return besideLabel + font.horizontalAdvance(text(each.*label));
    });
    return widths;
}

int total(const Widths &widths)
{
    return std::accumulate(widths.begin(), widths.end(), 0);
}

} // namespace

QList<BottomRowView::Button> BottomRowView::buttons(const QRect &row, const QFontMetrics &font, bool rightToLeft)
{
    const bool roomy = total(naturalWidths(font, &ButtonKind::label)) <= row.width();
    const auto label = roomy ? &ButtonKind::label : &ButtonKind::shortLabel;
    const Widths natural = naturalWidths(font, label);
    const double share = static_cast<double>(row.width() - total(natural)) / buttonCount;

    QList<Button> result;
    double x = 0;
    for (int i = 0; i < buttonCount; ++i) {
        const double end = x + natural.at(static_cast<std::size_t>(i)) + share;
        QRect rect(row.x() + qRound(x), row.y(), qRound(end) - qRound(x), row.height());
        if (rightToLeft)
            rect.moveLeft(row.x() + row.width() - qRound(end));
        const int forLabel = rect.width() - 2 * padding - iconSide - iconGap;
        result.append({rect, font.elidedText(text(kind(i).*label), Qt::ElideRight, forLabel)});
        x = end;
    }
    return result;
}

int BottomRowView::preferredWidth(const QFontMetrics &font)
{
    return std::max(minimumWidth, total(naturalWidths(font, &ButtonKind::shortLabel)));
}

QString BottomRowView::name(int button)
{
    return text(kind(button).label);
}

QString BottomRowView::symbol(int button)
{
    return QString::fromLatin1(kind(button).symbol);
}

MenuAction BottomRowView::action(int button)
{
    return {kind(button).action, {}};
}

} // namespace orvelle
