#include "ui/settings/Sections.h"

#include "ui/common/Colors.h"

#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QStyle>

namespace orvelle {

namespace {

/// A label in a softer tone of the text colour that keeps a contrast of 4.5
/// and follows a change of the palette.
class QuietLabel : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::Polish || (event->type() == QEvent::PaletteChange && !m_changing))
            soften();
        return QLabel::event(event);
    }

private:
    void soften()
    {
        const QPalette surroundings = parentWidget()->palette();
        const QColor ground = surroundings.color(QPalette::Window);
        const QColor textColor = surroundings.color(QPalette::WindowText);
        QPalette own = surroundings;
        own.setColor(QPalette::WindowText,
                     readable(surroundings.color(QPalette::Mid), ground, textColor, textContrast(surroundings)));
        m_changing = true;
        setPalette(own);
        m_changing = false;
    }

    bool m_changing = false;
};

} // namespace

QMargins tabMargins()
{
    return {20, 16, 20, 16};
}

QString spokenLabel(QString label)
{
    label.remove(u'&');
    while (label.endsWith(u':') || label.endsWith(u'…') || (!label.isEmpty() && label.back().isSpace()))
        label.chop(1);
    return label;
}

QLabel *pageTitle(const QString &text, QWidget *parent)
{
    QLabel *label = sectionTitle(text, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.25);
    label->setFont(font);
    return label;
}

QLabel *sectionTitle(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel *sectionSubtitle(const QString &text, QWidget *parent)
{
    auto *label = new QuietLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel *checkBoxHint(const QString &text, QCheckBox *box)
{
    QLabel *label = sectionSubtitle(text, box->parentWidget());
    const QStyle *style = box->style();
    const int before =
        style->pixelMetric(QStyle::PM_IndicatorWidth) + style->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    const bool rightToLeft = QApplication::layoutDirection() == Qt::RightToLeft;
    label->setContentsMargins(rightToLeft ? 0 : before, 0, rightToLeft ? before : 0, 0);
    box->setAccessibleDescription(text);
    return label;
}

} // namespace orvelle
