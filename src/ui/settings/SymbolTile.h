#pragma once

#include <QWidget>

namespace orvelle {

/// A symbol on a rounded tile in a soft tint of one of the choosable colours.
class SymbolTile : public QWidget
{
    Q_OBJECT

public:
    SymbolTile(const QString &symbol, const QString &colorKey, int side, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    QString m_colorKey;
};

} // namespace orvelle
