#include "platform/freedesktop/calendars/EvolutionCalendars.h"

#include "platform/freedesktop/calendars/IcsSeries.h"
#include "platform/freedesktop/evolution/EvolutionEngine.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QLoggingCategory>
#include <QMutex>

#include <cmath>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcEvolutionStore, "EvolutionCalendars", QtInfoMsg)

constexpr int endTime = 2000; ///< milliseconds
constexpr std::chrono::seconds expansionTime{3};

/// Stays loaded, as the libraries below it cannot be unloaded.
MakeEvolutionEngine module()
{
    QLibrary library(QCoreApplication::applicationDirPath() + u"/../lib/orvelle/orvelle-evolution"_s);
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const auto make = reinterpret_cast<MakeEvolutionEngine>(library.resolve("orvelleMakeEvolutionEngine"));
    if (!make)
        qCInfo(lcEvolutionStore, "Calendars of the server are not supported: %s", qPrintable(library.errorString()));
    return make;
}

QList<CalendarEvent> occurrencesOf(const EvolutionEvents &events, const QStringList &own)
{
    const auto deadline = std::chrono::steady_clock::now() + expansionTime;
    QList<CalendarEvent> found;
    bool whole = true;
    for (const IcsSeries &each : parseIcs(events.text, events.calendarColor, events.own + own))
        whole = expandIcs(each, events.from, events.to, deadline, found) && whole;
    if (!whole)
        qCWarning(lcEvolutionStore, "Events of a calendar repeat too often to be shown whole");
    return found;
}

} // namespace

/// Where the threads of an engine find the store, while it wants to hear of them.
struct EvolutionCalendars::Mailbox {
    QMutex lock;
    EvolutionCalendars *store = nullptr;
};

EvolutionCalendars::EvolutionCalendars(const QStringList &own, QObject *parent) : CalendarStore(parent), m_own(own) {}

EvolutionCalendars::~EvolutionCalendars()
{
    end();
    for (auto &each : m_ending) {
        // A server that hangs keeps its thread, which touches nothing of ours.
        if (!each->waitForEnd(endTime))
            static_cast<void>(each.release());
    }
}

CalendarStore::Access EvolutionCalendars::access() const
{
    if (!m_present)
        return Access::NotDetermined;
    return *m_present ? Access::Granted : Access::Denied;
}

void EvolutionCalendars::setWatching(bool watching)
{
    if (watching == std::exchange(m_watching, watching))
        return;
    if (!watching)
        end();
    else if (m_make)
        start();
    else if (!m_loader)
        load();
}

/// On a thread: from a disk, the libraries below the module come slowly.
void EvolutionCalendars::load()
{
    m_loader = std::make_unique<SerialWorker>(this);
    m_loader->run([this] { return [this, make = module()] { loaded(make); }; });
}

void EvolutionCalendars::loaded(MakeEvolutionEngine make)
{
    m_loader.reset();
    m_make = make;
    if (m_watching && m_make)
        return start();
    for (const quint64 question : m_questions.keys())
        answer(question, {});
    if (m_watching)
        setPresent(false);
    else
        answerRequests();
}

void EvolutionCalendars::start()
{
    m_mailbox = std::make_shared<Mailbox>();
    m_mailbox->store = this;
    const auto tell = [mailbox = m_mailbox](const std::function<void(EvolutionCalendars &)> &what) {
        const QMutexLocker lock(&mailbox->lock);
        if (EvolutionCalendars *store = mailbox->store)
            QMetaObject::invokeMethod(
                store, [store, what] { what(*store); }, Qt::QueuedConnection);
    };
    EvolutionHost host;
    host.occurrences = [own = m_own](const EvolutionEvents &events) { return occurrencesOf(events, own); };
    host.presenceKnown = [tell](bool present) {
        tell([present](EvolutionCalendars &store) { store.setPresent(present); });
    };
    host.calendarsOpened = [tell] { tell([](EvolutionCalendars &store) { emit store.availabilityChanged(); }); };
    host.eventsChanged = [tell] { tell([](EvolutionCalendars &store) { emit store.changed(); }); };
    host.answered = [tell](quint64 question, const QList<CalendarEvent> &events) {
        tell([question, events](EvolutionCalendars &store) { store.answer(question, events); });
    };
    m_engine.reset(m_make(std::move(host)));
    for (const quint64 question : m_questions.keys())
        ask(question);
}

void EvolutionCalendars::end()
{
    std::erase_if(m_ending, [](const auto &each) { return each->waitForEnd(0); });
    if (!m_engine)
        return;
    {
        const QMutexLocker lock(&m_mailbox->lock);
        m_mailbox->store = nullptr;
    }
    m_engine->stop();
    m_ending.push_back(std::move(m_engine));
    for (const quint64 question : m_questions.keys())
        answerSoon(question);
}

void EvolutionCalendars::fetch(Timestamp from, Timestamp to, Answered done)
{
    const quint64 question = ++m_lastQuestion;
    m_questions.insert(question, {static_cast<qint64>(std::floor(from.unixSeconds())),
                                  static_cast<qint64>(std::ceil(to.unixSeconds())), std::move(done)});
    if (m_engine)
        ask(question);
    else if (!m_loader)
        answerSoon(question);
}

void EvolutionCalendars::ask(quint64 question)
{
    const auto asked = m_questions.constFind(question);
    m_engine->ask(question, asked->from, asked->to);
}

/// With nothing, as there is nobody to ask.
void EvolutionCalendars::answerSoon(quint64 question)
{
    QMetaObject::invokeMethod(
        this, [this, question] { answer(question, {}); }, Qt::QueuedConnection);
}

void EvolutionCalendars::answer(quint64 question, const QList<CalendarEvent> &events)
{
    if (const Answered done = m_questions.take(question).done)
        done(events);
}

void EvolutionCalendars::requestAccess(std::function<void(const AccessAnswer &)> done)
{
    m_requests += std::move(done);
    if (m_present || (!m_engine && !m_loader))
        QMetaObject::invokeMethod(
            this, [this] { answerRequests(); }, Qt::QueuedConnection);
}

void EvolutionCalendars::answerRequests()
{
    for (const auto &done : std::exchange(m_requests, {}))
        done({isAvailable(), {}});
}

void EvolutionCalendars::setPresent(bool present)
{
    const bool was = m_present.value_or(!present);
    m_present = present;
    answerRequests();
    if (was != present)
        emit availabilityChanged();
}

} // namespace orvelle
