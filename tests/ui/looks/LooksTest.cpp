#include "platform/Appearance.h"
#include "ui/common/Theme.h"
#include "ui/looks/LooksWorld.h"
#include "ui/menu/BottomRowView.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle::test {

using namespace Qt::StringLiterals;

namespace {

struct Looks {
    friend void PrintTo(const Looks &looks, std::ostream *out) { *out << looks.name; }

    const char *name;
    bool longTexts = true;
    double fontFactor = 1;
    bool rightToLeft = false;
    bool dark = false;
    bool highContrast = false;
};

class FixedAppearance : public Appearance
{
public:
    explicit FixedAppearance(const Looks &looks) : m_looks(looks) {}
    bool prefersDark() const override { return m_looks.dark; }
    bool prefersHighContrast() const override { return m_looks.highContrast; }

private:
    Looks m_looks;
};

/// The application under these conditions, as long as this lives.
class Condition
{
public:
    explicit Condition(const Looks &looks) : m_font(QApplication::font()), m_palette(QApplication::palette())
    {
        if (looks.longTexts)
            m_texts.emplace();
        QFont font = m_font;
        font.setPointSizeF(font.pointSizeF() * looks.fontFactor);
        QApplication::setFont(font);
        QApplication::setLayoutDirection(looks.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        const FixedAppearance appearance(looks);
        const Theme theme(appearance);
    }
    ~Condition()
    {
        QApplication::setFont(m_font);
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QApplication::setPalette(m_palette);
    }

private:
    QFont m_font;
    QPalette m_palette;
    std::optional<LongTexts> m_texts;
};

QString describe(const QWidget *widget, const QString &text, const QString &trouble)
{
    const auto sides = [](const QSize &size) { return u"%1x%2"_s.arg(size.width()).arg(size.height()); };
    return u"%1 %2 \"%3\": %4, has %5 of %6, wants %7"_s.arg(
        QString::fromLatin1(widget->metaObject()->className()), widget->objectName(), text, trouble,
        sides(widget->size()), sides(widget->parentWidget()->size()), sides(widget->sizeHint()));
}

bool fits(const QLabel *label)
{
    if (!label->wordWrap())
        return label->width() >= label->sizeHint().width() ||
               label->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
    return label->height() >= label->heightForWidth(label->width()) &&
           label->width() >= label->minimumSizeHint().width();
}

bool fits(const QAbstractButton *button)
{
    // Two pixels are the frame's, where a style draws it inside its margin.
    return button->width() + 2 >= button->sizeHint().width() && button->height() + 2 >= button->sizeHint().height();
}

bool fits(const QComboBox *box)
{
    QStyleOptionComboBox option;
    option.initFrom(box);
    option.editable = false;
    const int room =
        box->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box).width();
    const int icon = box->itemIcon(box->currentIndex()).isNull() ? 0 : box->iconSize().width();
    return room + 2 >= icon + box->fontMetrics().horizontalAdvance(box->currentText());
}

/// Whether something around cuts off what lies beyond its edge, where nobody
/// can scroll to it.
bool isCutByParent(const QWidget *widget)
{
    for (const QWidget *at = widget; !at->isWindow(); at = at->parentWidget()) {
        const QWidget *parent = at->parentWidget();
        const auto *area = qobject_cast<const QAbstractScrollArea *>(parent->parentWidget());
        if (area && area->viewport() == parent && area->horizontalScrollBar()->maximum() > 0)
            return false;
        if (at->x() < 0 || at->x() + at->width() > parent->width())
            return true;
        if (!area && (at->y() < 0 || at->y() + at->height() > parent->height()))
            return true;
        if (area)
            return false;
    }
    return false;
}

template<typename Widget>
void findCut(const QWidget &window, QStringList &cut, const std::function<QString(const Widget *)> &textOf)
{
    for (const Widget *widget : window.findChildren<Widget *>()) {
        const QString text = textOf(widget);
        if (!widget->isVisibleTo(&window) || text.isEmpty() || widget->visibleRegion().isNull())
            continue;
        if (!fits(widget) && widget->toolTip().isEmpty())
            cut += describe(widget, text, u"does not fit"_s);
        else if (isCutByParent(widget))
            cut += describe(widget, text, u"is cut"_s);
    }
}

/// Every visible text of `window` that has less room than it needs and does not
/// say all of itself in a tool tip.
QStringList cutTexts(const QWidget &window)
{
    QStringList cut;
    findCut<QLabel>(window, cut, [](const QLabel *label) { return label->text(); });
    findCut<QAbstractButton>(window, cut, [](const QAbstractButton *button) { return button->text(); });
    findCut<QComboBox>(window, cut, [](const QComboBox *box) { return box->currentText(); });
    for (const QTabBar *bar : window.findChildren<QTabBar *>()) {
        for (int tab = 0; tab < bar->count(); ++tab) {
            const int wanted = bar->fontMetrics().horizontalAdvance(bar->tabText(tab)) + bar->iconSize().width();
            if (bar->tabRect(tab).width() < wanted && bar->tabToolTip(tab).isEmpty())
                cut += describe(bar, bar->tabText(tab), u"does not fit"_s);
        }
    }
    return cut;
}

/// For people to look at: with ORVELLE_PICTURES naming a folder, what is
/// checked is drawn into it.
void picture(QWidget &widget, const char *window, const Looks &looks)
{
    const QString folder = qEnvironmentVariable("ORVELLE_PICTURES");
    if (!folder.isEmpty())
        widget.grab().save(
            QDir(folder).filePath(u"%1-%2.png"_s.arg(QLatin1StringView(looks.name), QLatin1StringView(window))));
}

const Looks conditions[] = {
    {"plain", false},
    {"long"},
    {"large", false, 1.5},
    {"big", true, 1.5},
    {"huge", true, 2},
    {"mirrored", true, 1, true},
    {"dark", false, 1, false, true},
    {"contrast", false, 1, false, false, true},
    {"darkcontrast", false, 1, true, true, true},
};

std::string nameOf(const testing::TestParamInfo<Looks> &parameters)
{
    return parameters.param.name;
}

class LooksTest : public testing::TestWithParam<Looks>
{
protected:
    Condition condition{GetParam()};
    LooksWorld world;
};

TEST_P(LooksTest, NoTextIsCutOff)
{
    for (const KnownWindow &known : knownWindows()) {
        const auto window = known.make(world);
        ASSERT_TRUE(window) << known.name;
        window->show();
        QApplication::processEvents();
        picture(*window, known.name, GetParam());
        // As small as it goes is where a text would be cut.
        window->resize(window->minimumSizeHint());
        QApplication::processEvents();
        EXPECT_EQ(cutTexts(*window).join(u'\n').toStdString(), "") << known.name;
        if (!GetParam().longTexts || GetParam().fontFactor <= 1) {
            EXPECT_LE(window->height(), 560) << known.name << " is too high for a small screen";
            EXPECT_LE(window->width(), 1024) << known.name << " is too wide for a small screen";
        }
    }
}

TEST_P(LooksTest, MenuRowsFitOrSayAllInAToolTip)
{
    constexpr int leastWidth = 500; // of a screen for letters of twice the size
    if (GetParam().fontFactor >= 2 && QGuiApplication::primaryScreen()->availableSize().width() < leastWidth)
        GTEST_SKIP() << "the screen is too narrow";
    const auto popup = world.openMenu();
    ASSERT_EQ(popup->panels().size(), 2);
    int number = 0;
    for (MenuPanel *panel : popup->panels()) {
        picture(*panel, number++ == 0 ? "menu" : "submenu", GetParam());
        for (int row = 0; row < panel->rows().count(); ++row) {
            if (const QWidget *widget = panel->rowWidget(row)) {
                const int most = std::min(MenuLook::maximumWidth, panel->screen()->availableSize().width() - 4);
                EXPECT_GE(widget->width(), std::min(widget->sizeHint().width(), most));
                EXPECT_EQ(cutTexts(*widget).join(u'\n').toStdString(), "");
            }
        }
        const QRect bottom(0, 0, panel->width() - 2, 30);
        if (number == 1) {
            for (int i = 0; i < BottomRowView::buttonCount; ++i) {
                const QString label = BottomRowView::buttons(bottom, panel->fontMetrics(), false).at(i).label;
                panel->setCurrent(panel->rows().count() - 1, i);
                EXPECT_EQ(panel->hiddenTitle(panel->currentRow()).isEmpty(), !label.endsWith(QChar(0x2026)))
                    << label.toStdString();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Conditions, LooksTest, testing::ValuesIn(conditions), nameOf);

} // namespace

} // namespace orvelle::test
