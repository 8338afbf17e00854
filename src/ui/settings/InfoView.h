#pragma once

#include <QDialog>

namespace orvelle {

/// The welcome content: what Orvelle keeps within reach.
class InfoView : public QDialog
{
    Q_OBJECT

public:
    explicit InfoView(QWidget *parent = nullptr);
};

} // namespace orvelle
