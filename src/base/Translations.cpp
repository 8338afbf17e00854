#include "base/Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

namespace orvelle {

namespace {

constexpr auto translatorName = "orvelle texts";

QString languageFor(const QLocale &locale)
{
    for (const QString &preferred : locale.uiLanguages()) {
        const QLocale::Language language = QLocale(preferred).language();
        if (language == QLocale::French)
            return QStringLiteral("fr");
        if (language == QLocale::English || language == QLocale::C)
            return QStringLiteral("en");
    }
    return QStringLiteral("en");
}

} // namespace

bool installTranslations(QCoreApplication &application, const QLocale &locale)
{
    const QString name = QString::fromLatin1(translatorName);
    delete application.findChild<QTranslator *>(name, Qt::FindDirectChildrenOnly);

    auto *translator = new QTranslator(&application);
    translator->setObjectName(name);
    // The exact file, not load(locale): that would try the user's language only
    // by file name and stop at a country variant.
    if (!translator->load(QStringLiteral(":/i18n/orvelle_%1.qm").arg(languageFor(locale)))) {
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}

} // namespace orvelle
