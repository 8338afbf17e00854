#include "base/Translations.h"

#include <QApplication>
#include <QLocale>
#include <QStandardPaths>
#include <QStyleFactory>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    // Also while the tests are only listed, where no environment is set.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setQuitOnLastWindowClosed(false);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    orvelle::installTranslations(application, QLocale());
    return RUN_ALL_TESTS();
}
