#pragma once

#include "menubar/ShortcutKeys.h"

#include <QAbstractButton>

#include <functional>
#include <optional>

namespace orvelle {

/// Shows a shortcut and records another one: a click, the space bar or Return
/// starts, Escape stops, and the first key pressed with command or control is
/// taken, whatever it means elsewhere. Keys are known by their place on the
/// keyboard, so that the layout makes no difference. While it records it has
/// the keyboard to itself.
class ShortcutRecorderView : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ShortcutRecorderView(QWidget *parent = nullptr);
    ~ShortcutRecorderView() override;

    void setShortcut(const std::optional<Shortcut> &shortcut);
    const std::optional<Shortcut> &shortcut() const { return m_shortcut; }
    bool isRecording() const { return m_isRecording; }
    void stopRecording() { setRecording(false); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void recordingChanged(bool recording);
    /// By the user, after the recording has ended.
    void recorded(const orvelle::Shortcut &shortcut);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void setRecording(bool recording);
    void keyDown(const QKeyEvent &event);
    QString shownText() const;
    void describe();

    std::optional<Shortcut> m_shortcut;
    bool m_isRecording = false;
};

} // namespace orvelle
