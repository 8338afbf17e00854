#include "base/Translations.h"

#include "base/Text.h"

#include <QCoreApplication>
#include <QLocale>

#include <gtest/gtest.h>

namespace orvelle {

namespace {

QString settingsTitleIn(const char *locale)
{
    EXPECT_TRUE(installTranslations(*QCoreApplication::instance(), QLocale(QString::fromLatin1(locale))));
    return text("menu.settings"_text);
}

} // namespace

TEST(Translations, PicksTheLanguageAndFallsBackToEnglish)
{
    EXPECT_EQ(settingsTitleIn("fr_CA"), QStringLiteral("Réglages"));
    EXPECT_EQ(settingsTitleIn("de_DE"), QStringLiteral("Settings"));
    EXPECT_EQ(settingsTitleIn("fr_FR"), QStringLiteral("Réglages"));
    EXPECT_EQ(settingsTitleIn("C"), QStringLiteral("Settings"));
}

TEST(Translations, FillsTheOnePlaceholderAsItStands)
{
    EXPECT_TRUE(installTranslations(*QCoreApplication::instance(), QLocale(QLocale::English)));
    // A value that looks like a placeholder is not filled again.
    EXPECT_EQ(text("import.fileOpenMessage %@"_text, QStringLiteral("%@ %lld.ovexport")),
              QStringLiteral("What should happen with the links in “%@ %lld.ovexport”?"));
}

} // namespace orvelle
