#pragma once

#include "base/Timestamp.h"

#include <QObject>

#include <functional>

namespace orvelle {

class Alerts;
class Clock;
class UserDefaults;
class Workspace;

/// Asks, once the application was started on thirty different days, whether
/// the user likes to leave a tip. Main thread.
///
/// Keys: "TipUsageDaysCount" (int), "TipLastUsageDay" (string, yyyy-MM-dd in
/// local time), "TipDeferredUntil" (date), "TipPermanentlyDeclined" (bool), and
/// "TipPage" (string): the HTTPS address of the donation page. Without one from
/// there or from the maker nobody is ever asked.
class TipManager : public QObject
{
    Q_OBJECT

public:
    struct Services {
        UserDefaults &defaults;
        Clock &clock;
        Alerts &alerts;
        Workspace &workspace;
        /// Brings the application's windows to the front.
        std::function<void()> activateApp;
    };

    static constexpr qint64 usageDaysBeforeAsking = 30;
    static constexpr int daysDeferred = 90;

    /// `makersPage` is empty when the maker gave none.
    TipManager(const Services &services, const QString &makersPage, QObject *parent = nullptr);

    /// The day in the current time zone, as yyyy-MM-dd.
    static QString dayKey(Timestamp date);

    qint64 distinctUsageDays() const;
    bool permanentlyDeclined() const;

    /// Counts a start. Several on one day count once; a day on which the
    /// application merely went on running is none.
    void recordLaunch();
    void presentTipPromptIfNeeded();
    void presentTipPrompt();
    void openTipURL();

private:
    QUrl tipPage() const;
    void decline();
    void postpone();

    Services m_services;
    QString m_makersPage;
};

} // namespace orvelle
