#pragma once

class QCoreApplication;
class QLocale;

namespace orvelle {

/// Loads the texts of the best language Orvelle has for `locale` (its list of
/// preferred languages is honoured; English when none fits) and installs them
/// with `application`, which owns them. Replaces texts installed before. False
/// when the program was built without texts. Main thread.
bool installTranslations(QCoreApplication &application, const QLocale &locale);

} // namespace orvelle
