#pragma once

#include "platform/CalendarStore.h"
#include "platform/freedesktop/SerialWorker.h"

#include <QHash>

#include <memory>
#include <optional>
#include <vector>

namespace orvelle {

class EvolutionEngine;
struct EvolutionHost;

/// The calendars that Evolution Data Server keeps for the desktop's calendar
/// applications: all that are enabled, local and remote ones. The server and
/// what it takes to talk to it (a module beside the program) are only touched
/// while somebody watches; before that nothing is known and nothing is found.
///
/// availabilityChanged() also comes when calendars were opened, at first and
/// after the server was lost. What a calendar said last holds until then.
class EvolutionCalendars : public CalendarStore
{
    Q_OBJECT

public:
    /// `own` are further mail addresses of the user, in lower case, beside
    /// those of the accounts that the server knows.
    explicit EvolutionCalendars(const QStringList &own = {}, QObject *parent = nullptr);
    /// Waits up to three seconds for what is under way.
    ~EvolutionCalendars() override;

    bool isAvailable() const override { return m_present.value_or(false); }
    Access access() const override;
    void requestAccess(std::function<void(const AccessAnswer &)> done) override;
    void fetch(Timestamp from, Timestamp to, std::function<void(const QList<CalendarEvent> &)> done) override;
    void setWatching(bool watching) override;

private:
    struct Mailbox;
    using Answered = std::function<void(const QList<CalendarEvent> &)>;

    struct Question {
        qint64 from = 0; ///< seconds since 1970
        qint64 to = 0;
        Answered done;
    };

    void load();
    void loaded(EvolutionEngine *(*make)(EvolutionHost));
    void start();
    void end();
    void ask(quint64 question);
    void setPresent(bool present);
    void answer(quint64 question, const QList<CalendarEvent> &events);
    void answerSoon(quint64 question);
    void answerRequests();

    QStringList m_own;
    std::optional<bool> m_present;
    std::shared_ptr<Mailbox> m_mailbox;
    std::unique_ptr<EvolutionEngine> m_engine; ///< while somebody watches and the module is there
    bool m_watching = false;
    quint64 m_lastQuestion = 0;
    QHash<quint64, Question> m_questions;
    QList<std::function<void(const AccessAnswer &)>> m_requests;
    std::vector<std::unique_ptr<EvolutionEngine>> m_ending; ///< told to stop
    EvolutionEngine *(*m_make)(EvolutionHost) = nullptr;    ///< once the module is loaded
    std::unique_ptr<SerialWorker> m_loader;                 ///< while it is being loaded
};

} // namespace orvelle
