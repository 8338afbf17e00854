#pragma once

#include <QIcon>
#include <QMenu>

#include <optional>

namespace orvelle {

/// A round swatch of one of the choosable colours; empty for an unknown key.
QIcon colorSwatch(const QString &colorKey, const QPalette &palette);

/// The choosable colours as a menu, by name and swatch, in picker order.
class ColorMenu : public QMenu
{
    Q_OBJECT

public:
    explicit ColorMenu(QWidget *parent = nullptr);

    /// Marks the present colour; absent or unknown marks none.
    void setCurrent(const std::optional<QString> &colorKey);

signals:
    void chosen(const QString &colorKey);

private:
    void refreshSwatches();
};

} // namespace orvelle
