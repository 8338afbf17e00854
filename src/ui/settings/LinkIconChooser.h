#pragma once

#include "links/LinkIcons.h"

#include <QColor>
#include <QFrame>

#include <optional>
#include <span>

class QLabel;
class QLineEdit;
class QListWidget;

namespace orvelle {

/// A popup with the choosable symbols as a grid and a field that searches them
/// by name. Arrow keys move, Enter chooses, Escape closes.
class LinkIconChooser : public QFrame
{
    Q_OBJECT

public:
    explicit LinkIconChooser(QWidget *parent = nullptr);

    /// The symbols to choose from, the one of the kind first. `current` is
    /// absent for the kind's own.
    void setChoices(std::span<const IconChoice> choices, const QString &ownSymbol,
                    const std::optional<QString> &current, const QColor &color);
    /// Opens at the button, inside the screen.
    void popupAt(const QWidget &button);

signals:
    /// An empty name stands for the kind's own symbol.
    void chosen(const QString &symbol);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void add(const QString &label, const QString &symbol, const QString &value, const QColor &color);
    void filter(const QString &text);
    void take();

    QLineEdit *m_search;
    QListWidget *m_grid;
    QLabel *m_nothing;
};

} // namespace orvelle
