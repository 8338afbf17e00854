#pragma once

#include "platform/Clock.h"
#include "platform/Pasteboard.h"

#include <algorithm>

namespace orvelle::test {

/// A desktop on which other programs copy.
class FakePasteboard : public Pasteboard
{
public:
    explicit FakePasteboard(Clock &clock) : m_clock(clock) {}

    QStringList asked; ///< what was read: "types" and the forms, in order

    void otherAppCopies(const QList<PasteboardItem> &forms)
    {
        m_forms = forms;
        m_answers = true;
        ++m_count;
    }
    void otherAppCopies(const QString &text) { otherAppCopies({{textType(), text.toUtf8()}}); }
    /// The program that owns the content hangs, until somebody copies.
    void ownerNeverAnswers() { m_answers = false; }

    /// The desktop lets nobody look.
    bool isForbidden = false;
    bool isReadable() const override { return !isForbidden; }

    const QList<PasteboardItem> &content() const { return m_forms; }
    QByteArray content(const QString &type) const
    {
        const auto form = std::ranges::find(m_forms, type, &PasteboardItem::type);
        return form == m_forms.end() ? QByteArray() : form->data;
    }

    qint64 changeCount() const override { return m_count; }
    void types(QObject *context, TypesHandler handler) override
    {
        asked += QStringLiteral("types");
        answer(context, [this, handler] {
            QStringList names;
            for (const PasteboardItem &form : m_forms)
                names += form.type;
            if (!m_answers)
                handler(PasteboardError{PasteboardError::Kind::TimedOut, 0});
            else
                handler(names);
        });
    }
    void data(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler) override
    {
        asked += type;
        answer(context, [this, type, maxBytes, handler] {
            const auto form = std::ranges::find(m_forms, type, &PasteboardItem::type);
            if (!m_answers)
                handler(PasteboardError{PasteboardError::Kind::TimedOut, 0});
            else if (form == m_forms.end())
                handler(PasteboardError{PasteboardError::Kind::Refused, 0});
            else if (form->data.size() > maxBytes)
                handler(PasteboardError{PasteboardError::Kind::TooLarge, form->data.size()});
            else
                handler(form->data);
        });
    }
    void write(const QList<PasteboardItem> &forms) override { otherAppCopies(forms); }

private:
    void answer(QObject *context, std::function<void()> handler)
    {
        if (m_answers)
            QMetaObject::invokeMethod(context, std::move(handler), Qt::QueuedConnection);
        else
            m_clock.after(std::chrono::seconds(2), context, std::move(handler));
    }

    Clock &m_clock;
    QList<PasteboardItem> m_forms;
    bool m_answers = true;
    qint64 m_count = 0;
};

} // namespace orvelle::test
