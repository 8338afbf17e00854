#pragma once

#include "ui/menu/rows/WidgetRowView.h"
#include "widgets/systeminfo/SystemInfoData.h"

#include <array>

namespace orvelle {

class Notifications;
class SystemInfoManager;

/// Processor, memory in use and free disk space side by side: as one quiet
/// line, or in the manner of a terminal with bars.
class SystemInfoRowView : public WidgetRowView
{
    Q_OBJECT

public:
    SystemInfoRowView(const SystemInfoManager &manager, const Notifications &notifications, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Block {
        QString label;
        QString value;
        double share = 0; ///< how full it is, 0 to 1
        friend bool operator==(const Block &, const Block &) = default;
    };
    using Blocks = std::array<Block, 3>;

    static Blocks blocksOf(const std::optional<SystemInfoData> &data, bool inFull);
    void refresh();
    void paintDiscreet(QPainter &painter) const;
    void paintTerminal(QPainter &painter) const;
    int valueWidth(const QFontMetrics &metrics, std::size_t block) const;
    QRect terminalRect() const;
    int terminalLine() const;

    const SystemInfoManager &m_manager;
    SystemInfoDisplayMode m_mode = SystemInfoDisplayMode::Disabled;
    Blocks m_blocks;
};

} // namespace orvelle
