#include "services/TipManager.h"

#include "base/Text.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QPointer>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcTip, "TipManager", QtInfoMsg)

constexpr auto countKey = "TipUsageDaysCount"_L1;
constexpr auto lastDayKey = "TipLastUsageDay"_L1;
constexpr auto deferredKey = "TipDeferredUntil"_L1;
constexpr auto declinedKey = "TipPermanentlyDeclined"_L1;
constexpr auto pageKey = "TipPage"_L1;

QUrl pageOf(const QString &address)
{
    const QUrl url(address.trimmed(), QUrl::StrictMode);
    return url.isValid() && url.scheme() == u"https" && !url.host().isEmpty() ? url : QUrl();
}

} // namespace

TipManager::TipManager(const Services &services, const QString &makersPage, QObject *parent)
    : QObject(parent), m_services(services), m_makersPage(makersPage)
{
}

QString TipManager::dayKey(Timestamp date)
{
    return date.toDateTime().toLocalTime().date().toString(u"yyyy-MM-dd");
}

qint64 TipManager::distinctUsageDays() const
{
    return m_services.defaults.get<qint64>(countKey).value_or(0);
}

bool TipManager::permanentlyDeclined() const
{
    return m_services.defaults.get<bool>(declinedKey).value_or(false);
}

QUrl TipManager::tipPage() const
{
    const QUrl chosen = pageOf(m_services.defaults.get<QString>(pageKey).value_or(QString()));
    return chosen.isEmpty() ? pageOf(m_makersPage) : chosen;
}

void TipManager::recordLaunch()
{
    const QString today = dayKey(m_services.clock.now());
    if (m_services.defaults.get<QString>(lastDayKey) == today)
        return;
    // The day goes last: a day that could not be stored would otherwise be
    // taken for a counted one.
    if (m_services.defaults.write(countKey, distinctUsageDays() + 1))
        static_cast<void>(m_services.defaults.write(lastDayKey, today));
}

void TipManager::presentTipPromptIfNeeded()
{
    if (permanentlyDeclined() || distinctUsageDays() < usageDaysBeforeAsking)
        return;
    const auto deferred = m_services.defaults.get<Timestamp>(deferredKey);
    if (deferred && m_services.clock.now() < *deferred)
        return;
    if (tipPage().isEmpty())
        return;
    presentTipPrompt();
}

void TipManager::presentTipPrompt()
{
    qCInfo(lcTip, "The user is asked for a tip");
    m_services.activateApp();
    Alert alert;
    alert.message = text("tip.title"_text);
    alert.informativeText = text("tip.message"_text);
    alert.buttons = {text("tip.buy"_text), text("tip.later"_text), text("tip.neverAgain"_text)};
    alert.escapeButton = 1;
    alert.symbol = u"heart.fill"_s;
    m_services.alerts.show(alert, [self = QPointer<TipManager>(this)](int button) {
        if (!self)
            return;
        if (button == 1)
            return self->postpone();
        if (button == 0)
            self->openTipURL();
        self->decline();
    });
}

void TipManager::openTipURL()
{
    if (const QUrl page = tipPage(); !page.isEmpty())
        m_services.workspace.openUrl(page);
}

void TipManager::decline()
{
    static_cast<void>(m_services.defaults.write(declinedKey, true));
}

void TipManager::postpone()
{
    const QDateTime now = m_services.clock.now().toDateTime().toLocalTime();
    static_cast<void>(m_services.defaults.write(deferredKey, Timestamp::fromDateTime(now.addDays(daysDeferred))));
}

} // namespace orvelle
