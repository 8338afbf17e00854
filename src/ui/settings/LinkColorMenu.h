#pragma once

#include "ui/common/ColorMenu.h"

namespace orvelle {

/// The choosable colours with the kind's own colour above them, for which
/// chosen() carries an empty key.
class LinkColorMenu : public ColorMenu
{
    Q_OBJECT

public:
    explicit LinkColorMenu(QWidget *parent = nullptr);
};

} // namespace orvelle
