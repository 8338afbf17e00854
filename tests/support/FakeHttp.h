#pragma once

#include "platform/HttpClient.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

namespace orvelle::test {

/// The network as a test tells it. Every request is recorded in `requests`;
/// answers arrive when the test says deliver(). What nobody answers for is
/// unreachable.
///
///     http.answers("https://example.org/*", {200, {}, "hello"});
///     http.deliver();
class FakeHttp : public HttpClient
{
public:
    using Answer = Result<HttpResponse, HttpError>;
    using Answering = std::function<Answer(const HttpRequest &)>;

    QList<HttpRequest> requests;
    int cancelled = 0;

    /// The newest rule whose pattern ("*" for anything) matches decides.
    void answersBy(const QString &pattern, Answering answering) { m_rules.prepend({toRegex(pattern), answering}); }
    void answers(const QString &pattern, const Answer &answer)
    {
        answersBy(pattern, [answer](const HttpRequest &) { return answer; });
    }
    void answers(const QString &pattern, int status, const QByteArray &body = {})
    {
        answersBy(pattern, [status, body](const HttpRequest &request) {
            return Answer(HttpResponse{status, {}, body, request.url});
        });
    }
    void fails(const QString &pattern, HttpError::Kind kind) { answers(pattern, Answer(HttpError{kind, {}})); }
    /// Neither answers nor fails, until another rule is made.
    void hangs(const QString &pattern) { m_rules.prepend({toRegex(pattern), nullptr}); }

    /// Requests that wait for their answer.
    qsizetype outstanding() const { return m_waiting.size(); }

    /// Answers what waits now, in the order of sending, but not what is sent
    /// because of it. Gives the number of answers.
    int deliver()
    {
        int delivered = 0;
        const QList<quint64> ids = m_order;
        for (const quint64 id : ids) {
            const auto waiting = m_waiting.constFind(id);
            if (waiting == m_waiting.constEnd())
                continue;
            const auto answer = answerTo(waiting->request);
            if (!answer)
                continue;
            const Done done = waiting->done;
            forget(id);
            ++delivered;
            done(*answer);
        }
        return delivered;
    }
    /// The same, until nobody is answered any more.
    void deliverAll()
    {
        while (deliver() > 0) {
        }
    }

    std::unique_ptr<HttpCall> send(const HttpRequest &request, Done done) override
    {
        requests += request;
        m_waiting.insert(m_nextId, {request, std::move(done)});
        m_order += m_nextId;
        return std::make_unique<Call>(*this, m_nextId++);
    }

private:
    struct Rule {
        QRegularExpression pattern;
        Answering answering; ///< empty: hangs
    };
    struct Waiting {
        HttpRequest request;
        Done done;
    };
    class Call : public HttpCall
    {
    public:
        Call(FakeHttp &http, quint64 id) : m_http(http), m_id(id) {}
        ~Call() override { m_http.cancelled += m_http.forget(m_id) ? 1 : 0; }

    private:
        FakeHttp &m_http;
        quint64 m_id;
    };

    static QRegularExpression toRegex(const QString &pattern)
    {
        const QString escaped = QRegularExpression::escape(pattern);
        return QRegularExpression(
            QRegularExpression::anchoredPattern(QString(escaped).replace(QStringLiteral("\\*"), QStringLiteral(".*"))));
    }

    std::optional<Answer> answerTo(const HttpRequest &request) const
    {
        const QString address = request.url.toString(QUrl::FullyEncoded);
        const auto rule = std::find_if(m_rules.begin(), m_rules.end(),
                                       [&address](const Rule &r) { return r.pattern.match(address).hasMatch(); });
        if (rule == m_rules.end())
            return Answer(HttpError{HttpError::Kind::Unreachable, {}});
        return rule->answering ? std::optional(rule->answering(request)) : std::nullopt;
    }

    bool forget(quint64 id)
    {
        m_order.removeOne(id);
        return m_waiting.remove(id);
    }

    QList<Rule> m_rules;
    QHash<quint64, Waiting> m_waiting;
    QList<quint64> m_order;
    quint64 m_nextId = 1;
};

} // namespace orvelle::test
