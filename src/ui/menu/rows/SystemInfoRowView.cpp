#include "ui/menu/rows/SystemInfoRowView.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "ui/common/LineText.h"
#include "widgets/systeminfo/SystemInfoManager.h"

#include <QFontDatabase>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int labelGap = 5;
constexpr int blockGap = 12;
constexpr int terminalPadding = 9;
constexpr int barHeight = 3;

// A terminal is dark, whatever the desktop's colours.
constexpr QColor terminalGround(0x12, 0x18, 0x1f);
constexpr QColor terminalText(0x7d, 0xe8, 0x9a);
constexpr QColor terminalLabel(0x93, 0xa4, 0xb4);
constexpr QColor terminalTrack(0x2b, 0x36, 0x41);

QFont terminalFont(const QFont &base)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (base.pointSizeF() > 0)
        font.setPointSizeF(base.pointSizeF());
    else
        font.setPixelSize(base.pixelSize());
    return font;
}

QFont smaller(QFont font)
{
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * 0.85);
    else
        font.setPixelSize(static_cast<int>(font.pixelSize() * 0.85));
    return font;
}

double shareOf(quint64 part, quint64 whole)
{
    return whole == 0 ? 0 : std::clamp(static_cast<double>(part) / static_cast<double>(whole), 0.0, 1.0);
}

} // namespace

SystemInfoRowView::SystemInfoRowView(const SystemInfoManager &manager, const Notifications &notifications,
                                     QWidget *parent)
    : WidgetRowView(parent), m_manager(manager)
{
    connect(&notifications, &Notifications::systemInfoChanged, this, &SystemInfoRowView::refresh);
    refresh();
}

SystemInfoRowView::Blocks SystemInfoRowView::blocksOf(const std::optional<SystemInfoData> &data, bool inFull)
{
    const QString none = u"–"_s;
    Blocks blocks{{{text("systemInfo.cpu"_text), none, 0},
                   {text("systemInfo.memory"_text), none, 0},
                   {text("systemInfo.disk"_text), none, 0}}};
    if (!data)
        return blocks;
    const quint64 used = data->totalRAM - std::min(data->freeRAM, data->totalRAM);
    const QString memory = formatBytes(used);
    const QString disk = formatBytes(data->freeDisk);
    blocks[0].value = QString::number(std::lround(data->cpuUsage)) + u'%';
    blocks[0].share = data->cpuUsage / 100;
    blocks[1].value = inFull ? memory + u'/' + formatBytes(data->totalRAM) : memory;
    blocks[1].share = shareOf(used, data->totalRAM);
    blocks[2].value = inFull ? text("systemInfo.free %@"_text, disk) : disk;
    blocks[2].share = 1 - shareOf(data->freeDisk, data->totalDisk);
    return blocks;
}

void SystemInfoRowView::refresh()
{
    const auto mode = m_manager.displayMode();
    const Blocks blocks = blocksOf(m_manager.systemInfo(), mode == SystemInfoDisplayMode::Terminal);
    if (mode != m_mode)
        updateGeometry();
    else if (blocks == m_blocks)
        return;
    m_mode = mode;
    m_blocks = blocks;
    QStringList spoken;
    for (const Block &each : blocksOf(m_manager.systemInfo(), true))
        spoken += each.label + u' ' + each.value;
    describe(text("systemInfo.title"_text), spoken.join(u", "_s));
    update();
}

int SystemInfoRowView::terminalLine() const
{
    return QFontMetrics(terminalFont(font())).height();
}

QSize SystemInfoRowView::sizeHint() const
{
    const bool terminal = m_mode == SystemInfoDisplayMode::Terminal;
    const QFontMetrics metrics(terminal ? terminalFont(font()) : font());
    const QString widest = terminal ? u"99.9G/99.9G"_s : u"9.9G"_s;
    const int value = metrics.horizontalAdvance(widest);
    if (terminal)
        return {2 * (MenuLook::margin + terminalPadding) + metrics.horizontalAdvance(u"100%"_s) + value +
                    metrics.horizontalAdvance(text("systemInfo.free %@"_text, u"999G"_s)) + 3 * blockGap,
                2 * terminalLine() + 22};
    int width = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap + MenuLook::margin + 2 * blockGap;
    for (const Block &each : m_blocks)
        width += metrics.horizontalAdvance(each.label) + labelGap + value;
    return {width, lineHeight()};
}

void SystemInfoRowView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintFocus(painter);
    if (m_mode == SystemInfoDisplayMode::Terminal)
        paintTerminal(painter);
    else
        paintDiscreet(painter);
}

void SystemInfoRowView::paintDiscreet(QPainter &painter) const
{
    paintIcon(painter, u"desktopcomputer"_s);
    const QRect content = contentRect();
    const QFontMetrics metrics(font());
    // Room for what the value may become, so that the blocks stay in place.
    const std::array<int, 3> values{valueWidth(metrics, 0), valueWidth(metrics, 1), valueWidth(metrics, 2)};
    int taken = std::accumulate(values.begin(), values.end(), 0);
    for (const Block &each : m_blocks)
        taken += metrics.horizontalAdvance(each.label) + labelGap;
    const int spacer = std::max(labelGap, (content.width() - taken) / 2);
    painter.setFont(font());
    int x = content.x();
    for (std::size_t i = 0; i < m_blocks.size(); ++i) {
        const int label = metrics.horizontalAdvance(m_blocks[i].label);
        painter.setPen(labelColor());
        painter.drawText(mirrored({x, 0, label + 1, lineHeight()}), Qt::AlignVCenter | Qt::TextSingleLine,
                         m_blocks[i].label);
        x += label + labelGap;
        painter.setPen(textColor());
        drawLine(painter, mirrored({x, 0, values[i] + 1, lineHeight()}), m_blocks[i].value, layoutDirection());
        x += values[i] + spacer;
    }
}

int SystemInfoRowView::valueWidth(const QFontMetrics &metrics, std::size_t block) const
{
    return std::max(metrics.horizontalAdvance(m_blocks[block].value),
                    metrics.horizontalAdvance(block == 0 ? u"100%"_s : u"9.9G"_s));
}

QRect SystemInfoRowView::terminalRect() const
{
    return rect().adjusted(MenuLook::margin - 4, 3, 4 - MenuLook::margin, -3);
}

void SystemInfoRowView::paintTerminal(QPainter &painter) const
{
    const QRect panel = terminalRect();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(terminalGround);
    painter.drawRoundedRect(QRectF(panel), 6, 6);

    const QFont fixed = terminalFont(font());
    const QFontMetrics metrics(fixed);
    const QRect inner = panel.adjusted(terminalPadding, 4, -terminalPadding, -5);
    std::array<int, 3> widths{};
    std::ranges::transform(m_blocks, widths.begin(), [&](const Block &each) {
        return std::max(metrics.horizontalAdvance(each.value), metrics.horizontalAdvance(u"100%"_s));
    });
    const int spacer = std::max(blockGap / 2, (inner.width() - widths[0] - widths[1] - widths[2]) / 2);
    int x = inner.x();
    for (std::size_t i = 0; i < m_blocks.size(); ++i) {
        const Block &block = m_blocks[i];
        const QRect column = mirrored({x, inner.y(), widths[i], inner.height()});
        painter.setFont(smaller(fixed));
        painter.setPen(terminalLabel);
        painter.drawText(column, Qt::AlignTop | Qt::AlignLeading | Qt::TextSingleLine, block.label);
        painter.setFont(fixed);
        painter.setPen(terminalText);
        painter.drawText(column.adjusted(0, 0, 0, -barHeight - 2),
                         Qt::AlignBottom | Qt::AlignLeading | Qt::TextSingleLine, block.value);
        const QRect track(column.x(), column.y() + column.height() - barHeight, column.width(), barHeight);
        QRect bar = track;
        bar.setWidth(static_cast<int>(std::lround(block.share * track.width())));
        painter.fillRect(track, terminalTrack);
        painter.fillRect(layoutDirection() == Qt::RightToLeft ? bar.translated(track.width() - bar.width(), 0) : bar,
                         terminalText);
        x += widths[i] + spacer;
    }
}

} // namespace orvelle
