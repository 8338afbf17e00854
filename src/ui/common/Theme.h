#pragma once

#include <QColor>
#include <QObject>
#include <QPalette>

#include <optional>

namespace orvelle {

class Appearance;

/// Gives the windows the colours that the desktop asks for where its toolkit
/// theme does not: the desktop's own, dark ones, and ones of high contrast; and
/// the icons that go with dark ones. Else the theme's own
/// are left alone but for the few that cannot be read on each other. Main
/// thread; needs the QApplication, whose style gets edges (EdgeStyle).
class Theme : public QObject
{
    Q_OBJECT

public:
    /// Follows `appearance`, which must outlive this.
    explicit Theme(const Appearance &appearance, QObject *parent = nullptr);

    static QPalette darkPalette();
    static QPalette highContrastPalette(bool dark);
    /// `own` with what is chosen, linked or hinted at moved as far as it takes
    /// to be read.
    static QPalette legible(const QPalette &own);

private:
    struct Wish {
        bool dark = false;
        bool highContrast = false;
        std::optional<QPalette> desktop;
        QColor ground; ///< of the palette that followed from it
        bool operator==(const Wish &) const = default;
    };
    void apply();

    const Appearance &m_appearance;
    std::optional<Wish> m_applied;
    QPalette m_own;          ///< what was there before
    bool m_replaced = false; ///< the palette is ours
    bool m_applying = false;
};

} // namespace orvelle
