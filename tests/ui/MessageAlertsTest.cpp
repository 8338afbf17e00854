#include "ui/common/MessageAlerts.h"

#include "ui/common/PlainToolTip.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <algorithm>

namespace orvelle {

namespace {

QDialog *alertOnScreen()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QStringLiteral("Alert") && widget->isVisible())
            return qobject_cast<QDialog *>(widget);
    }
    return nullptr;
}

QPushButton *button(int index)
{
    return alertOnScreen()->findChild<QPushButton *>(QStringLiteral("alertButton%1").arg(index));
}

Alert question(const char *message)
{
    return {Alert::Style::Warning,
            QString::fromLatin1(message),
            QStringLiteral("more"),
            {QStringLiteral("Replace"), QStringLiteral("Merge & keep"), QStringLiteral("Cancel")}};
}

} // namespace

class MessageAlertsTest : public testing::Test
{
protected:
    void show(const char *message)
    {
        alerts.show(question(message),
                    [this, message](int chosen) { answers += QString::fromLatin1(message) + QString::number(chosen); });
    }

    MessageAlerts alerts;
    QStringList answers;
};

TEST_F(MessageAlertsTest, ButtonsStandInTheOrderGivenAndAnswerWithTheirPosition)
{
    show("a");
    EXPECT_LT(button(0)->x(), button(1)->x());
    EXPECT_LT(button(1)->x(), button(2)->x());
    EXPECT_TRUE(button(0)->isDefault());
    EXPECT_EQ(button(1)->text(), QStringLiteral("Merge && keep"));
    button(1)->click();
    EXPECT_EQ(answers, QStringList{QStringLiteral("a1")});
    EXPECT_EQ(alertOnScreen(), nullptr);
}

TEST_F(MessageAlertsTest, EscapeAndTheCloseButtonMeanTheLastButton)
{
    show("a");
    QTest::keyClick(alertOnScreen(), Qt::Key_Escape);
    show("b");
    alertOnScreen()->close();
    show("c");
    QTest::keyClick(alertOnScreen(), Qt::Key_Return);
    EXPECT_EQ(answers, (QStringList{QStringLiteral("a2"), QStringLiteral("b2"), QStringLiteral("c0")}));
}

TEST_F(MessageAlertsTest, OneAlertAtATimeInTheOrderAsked)
{
    show("a");
    alerts.show(question("b"), [this](int chosen) {
        answers += QStringLiteral("b%1").arg(chosen);
        show("d"); // asked from inside an answer: after those that wait already
    });
    show("c");
    for (int i = 0; i < 4; ++i) {
        ASSERT_NE(alertOnScreen(), nullptr);
        button(0)->click();
    }
    EXPECT_EQ(answers,
              (QStringList{QStringLiteral("a0"), QStringLiteral("b0"), QStringLiteral("c0"), QStringLiteral("d0")}));
}

TEST_F(MessageAlertsTest, NamesCannotBringMarkup)
{
    show("<b>bold</b><img src=x>");
    for (const QLabel *label : alertOnScreen()->findChildren<QLabel *>())
        EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
    button(2)->click();
}

TEST_F(MessageAlertsTest, NoNameIsTooLongToBeRead)
{
    const QString names[] = {QStringLiteral("Sicherungskopie").repeated(14),
                             QStringLiteral("👩‍👩‍👧").repeated(40), QStringLiteral("備份").repeated(90),
                             QStringLiteral("short")};
    for (const QString &name : names) {
        alerts.show({Alert::Style::Warning, QStringLiteral("Title"), name, {QStringLiteral("OK")}});
        const QList<QLabel *> labels = alertOnScreen()->findChildren<QLabel *>();
        const auto label = std::ranges::find_if(
            labels, [&name](const QLabel *each) { return QString(each->text()).remove(QChar(0x200b)) == name; });
        ASSERT_NE(label, labels.end()) << "nothing else may be different";
        QTextLayout layout((*label)->text(), (*label)->font());
        layout.beginLayout();
        double height = 0;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth((*label)->width());
            EXPECT_LE(line.naturalTextWidth(), (*label)->width());
            height += line.height();
        }
        layout.endLayout();
        EXPECT_GE((*label)->height() + 1, height);
        button(0)->click();
    }
}

TEST_F(MessageAlertsTest, TheButtonsStayOnTheScreenWhateverTheTextsAre)
{
    const QString wide = QStringLiteral("W").repeated(20000);
    const QString lines = QStringLiteral("line\n").repeated(5000);
    const struct {
        QString message;
        QString text;
    } cases[] = {{QStringLiteral("“%1” leads to a program").arg(wide), QStringLiteral("short")},
                 {lines, QStringLiteral("short")},
                 {QStringLiteral("Title"), wide},
                 {QStringLiteral("Title"), lines + QStringLiteral("the end")},
                 {wide, wide}};
    for (const auto &each : cases) {
        alerts.show({Alert::Style::Warning, each.message, each.text, {QStringLiteral("OK")}});
        const QRect screen = alertOnScreen()->screen()->availableGeometry();
        EXPECT_LE(alertOnScreen()->height(), screen.height());
        EXPECT_LE(alertOnScreen()->width(), screen.width());
        EXPECT_TRUE(alertOnScreen()->rect().contains(button(0)->geometry()));
        EXPECT_LT(alertOnScreen()->accessibleName().size(), 1000);
        EXPECT_TRUE(alertOnScreen()->accessibleDescription().endsWith(each.text.right(7)));
        button(0)->click();
    }
}

TEST_F(MessageAlertsTest, EnterMeansTheDefaultButton)
{
    Alert cautious = question("a");
    cautious.defaultButton = 2;
    alerts.show(cautious, [this](int chosen) { answers += QString::number(chosen); });
    EXPECT_TRUE(button(2)->isDefault());
    EXPECT_EQ(alertOnScreen()->focusWidget(), button(2)) << "the space bar presses what has the focus";
    QTest::keyClick(alertOnScreen(), Qt::Key_Return);
    EXPECT_EQ(answers, QStringList{QStringLiteral("2")});
}

TEST(PlainToolTip, ShowsEachTextAsItStands)
{
    const QString texts[] = {QStringLiteral("Q&A"),
                             QStringLiteral("a <b>bold</b> name"),
                             QStringLiteral("<img src='/etc/hostname'>"),
                             QStringLiteral("&lt;escaped&gt;"),
                             QStringLiteral("one\ntwo <i>lines"),
                             QStringLiteral("/a/long/path & more").repeated(20)};
    for (const QString &text : texts) {
        const QString tip = plainToolTip(text);
        const bool isMarkup = Qt::mightBeRichText(tip);
        EXPECT_EQ(isMarkup ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip, text);
        EXPECT_TRUE(isMarkup || text.size() < 100) << "would be wider than a screen";
    }
}

TEST(MessageAlerts, MayGoAwayWhileAnAlertIsOnScreen)
{
    bool answered = false;
    {
        MessageAlerts alerts;
        alerts.show(question("a"), [&answered](int) { answered = true; });
    }
    EXPECT_EQ(alertOnScreen(), nullptr);
    EXPECT_FALSE(answered);
}

} // namespace orvelle
