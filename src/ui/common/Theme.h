#pragma once

#include <QObject>
#include <QPalette>

namespace orvelle {

class Appearance;

/// Makes the windows dark on a dark desktop whose toolkit theme left them
/// light, and gives the theme's own colours back when the desktop turns light.
/// A theme that is dark by itself is left alone. Main thread; needs the
/// QApplication.
class Theme : public QObject
{
    Q_OBJECT

public:
    /// Follows `appearance`, which must outlive this.
    explicit Theme(const Appearance &appearance, QObject *parent = nullptr);

    static QPalette darkPalette();

private:
    void apply();

    const Appearance &m_appearance;
    bool m_darkened = false;
};

} // namespace orvelle
