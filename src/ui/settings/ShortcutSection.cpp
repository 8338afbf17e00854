#include "ui/settings/ShortcutSection.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "menubar/GlobalShortcut.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/settings/Sections.h"
#include "ui/settings/ShortcutRecorderView.h"

#include <QAccessible>
#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr int symbolSide = 14;
constexpr QColor orangeOnLight(0xb3, 0x5c, 0x00);
constexpr QColor orangeOnDark(0xff, 0xa0, 0x40);

/// Empty when there is nothing to be said.
QString remarkOf(GlobalShortcut::State state)
{
    switch (state) {
    case GlobalShortcut::State::Off:
    case GlobalShortcut::State::Registered:
        return {};
    case GlobalShortcut::State::HeldByAnother:
        return text("shortcut.heldByAnother"_text);
    case GlobalShortcut::State::NoSuchKey:
        return text("shortcut.noSuchKey"_text);
    case GlobalShortcut::State::Undecided:
        return text("shortcut.undecided"_text);
    case GlobalShortcut::State::Denied:
        return text("shortcut.denied"_text);
    case GlobalShortcut::State::Unavailable:
        return text("shortcut.unavailable"_text);
    case GlobalShortcut::State::Refused:
        return text("shortcut.refused"_text);
    }
    Q_UNREACHABLE();
}

} // namespace

ShortcutSection::ShortcutSection(GlobalShortcut &shortcut, Notifications &notifications, QWidget *parent)
    : QWidget(parent),
      m_shortcut(shortcut),
      m_enabled(new QCheckBox(text("shortcut.enabled"_text), this)),
      m_recorder(new ShortcutRecorderView(this)),
      m_reset(new QToolButton(this)),
      m_spoken(sectionSubtitle({}, this)),
      m_remark(new QWidget(this)),
      m_remarkSymbol(new QLabel(m_remark)),
      m_remarkText(new QLabel(m_remark))
{
    setObjectName(QStringLiteral("shortcutSection"));
    m_enabled->setObjectName(QStringLiteral("shortcutEnabled"));
    m_recorder->setObjectName(QStringLiteral("shortcutRecorder"));
    m_reset->setObjectName(QStringLiteral("shortcutReset"));
    m_reset->setIcon(symbolIcon(QStringLiteral("arrow.uturn.backward")));
    m_reset->setAutoRaise(true);
    m_reset->setFocusPolicy(Qt::StrongFocus);
    const QString standard = text("shortcut.reset %@"_text, displayString({}));
    m_reset->setToolTip(standard);
    m_reset->setAccessibleName(text("shortcut.reset %@"_text, spokenString({})));
    m_spoken->setWordWrap(false);
    m_remarkText->setObjectName(QStringLiteral("shortcutRemark"));
    m_remarkText->setTextFormat(Qt::PlainText);
    m_remarkText->setWordWrap(true);

    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(m_enabled);
    row->addWidget(m_recorder);
    row->addWidget(m_reset);
    row->addWidget(m_spoken);
    row->addStretch(1);
    auto *remark = new QHBoxLayout(m_remark);
    remark->setContentsMargins({});
    remark->setSpacing(6);
    remark->addWidget(m_remarkSymbol, 0, Qt::AlignTop);
    remark->addWidget(m_remarkText, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(4);
    column->addLayout(row);
    column->addWidget(m_remark);

    connect(m_enabled, &QCheckBox::clicked, this, [this](bool on) {
        m_shortcut.setEnabled(on);
        refresh();
    });
    connect(m_recorder, &ShortcutRecorderView::recordingChanged, &notifications,
            &Notifications::shortcutRecordingChanged);
    connect(m_recorder, &ShortcutRecorderView::recordingChanged, this, &ShortcutSection::refresh);
    connect(m_recorder, &ShortcutRecorderView::recorded, this, &ShortcutSection::store);
    connect(m_reset, &QToolButton::clicked, this, [this] { store({}); });
    // Posted before whoever registers it has done so; the state tells when.
    connect(&notifications, &Notifications::globalShortcutChanged, this, &ShortcutSection::refresh);
    connect(&m_shortcut, &GlobalShortcut::stateChanged, this, &ShortcutSection::refresh);
    refresh();
}

void ShortcutSection::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showRemark();
}

void ShortcutSection::store(const Shortcut &recorded)
{
    m_showConflictWarning = isReserved(recorded);
    m_shortcut.setShortcut(recorded);
    refresh();
}

void ShortcutSection::refresh()
{
    const bool on = m_shortcut.isEnabled();
    const auto stored = m_shortcut.shortcut();
    m_enabled->setChecked(on);
    m_recorder->setEnabled(on);
    if (!m_recorder->isRecording())
        m_recorder->setShortcut(stored);
    m_reset->setEnabled(on && stored != Shortcut());
    m_spoken->setText(stored && !m_recorder->isRecording() ? spoken(*stored) : QString());
    showRemark();
}

/// What the desktop has made of it, where it decides itself.
QString ShortcutSection::spoken(const Shortcut &stored) const
{
    const QString given = m_shortcut.desktopTrigger();
    return given.isEmpty() ? spokenString(stored) : text("shortcut.desktopTrigger %@"_text, given);
}

/// A failure comes first: a combination that works nowhere conflicts nowhere.
void ShortcutSection::showRemark()
{
    QString said = remarkOf(m_shortcut.state());
    if (said.isEmpty() && m_showConflictWarning && m_shortcut.isEnabled())
        said = text("shortcut.conflictWarning"_text);
    const bool isNew = !said.isEmpty() && said != m_remarkText->text();
    const QColor orange = readable(isDark(palette()) ? orangeOnDark : orangeOnLight, palette().color(QPalette::Window),
                                   palette().color(QPalette::WindowText), textContrast(palette()));
    QPalette tinted = palette();
    tinted.setColor(QPalette::WindowText, orange);
    m_remarkText->setPalette(tinted);
    m_remarkSymbol->setPixmap(
        symbolPixmap(QStringLiteral("exclamationmark.triangle.fill"), symbolSide, orange, devicePixelRatioF()));
    m_remarkText->setText(said);
    m_remarkText->setAccessibleName(said);
    m_remark->setVisible(!said.isEmpty());
    if (isNew && isVisible()) {
        QAccessibleEvent told(m_remarkText, QAccessible::Alert);
        QAccessible::updateAccessibility(&told);
    }
}

} // namespace orvelle
