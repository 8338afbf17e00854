#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>

namespace orvelle {

/// One form of what is copied: a media type (RFC 2046) and the bytes.
struct PasteboardItem {
    QString type;
    QByteArray data;
    friend bool operator==(const PasteboardItem &, const PasteboardItem &) = default;
};

/// Why nothing was read.
struct PasteboardError {
    enum class Kind {
        Unavailable, ///< this desktop has no pasteboard that we can reach
        Refused,     ///< nothing is copied, or not in that form
        TimedOut,    ///< the program that owns it did not answer in time
        TooLarge,
    };
    Kind kind = Kind::Unavailable;
    qint64 bytes = 0; ///< TooLarge: the size, or what is known of it
};

/// What the user copies from one program to another. Nothing is read until it
/// is asked for, and no call waits for another program. Main thread.
class Pasteboard : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Unformatted text: always UTF-8 here, whatever form the owner has it in.
    static QString textType() { return QStringLiteral("text/plain"); }
    /// What types() gives at most; an owner that names more is cut short.
    static constexpr qsizetype maxTypes = 256;

    /// Grows whenever something else is copied, by this program too.
    virtual qint64 changeCount() const = 0;

    /// False where the desktop lets no program in the background see what is
    /// copied; then nothing is ever read.
    virtual bool isReadable() const { return true; }

    /// False where a window in use has a better way: the desktop shows the
    /// windowing toolkit's own clipboard what it keeps from the background.
    virtual bool servesWindows() const { return isReadable(); }

    using TypesHandler = std::function<void(const Result<QStringList, PasteboardError> &)>;
    using DataHandler = std::function<void(const Result<QByteArray, PasteboardError> &)>;
    /// The forms on offer, as their owner calls them; textType() is among them
    /// when there is text in any form. The handler runs once, from the event
    /// loop, unless `context` or the pasteboard is gone by then. An owner that
    /// says nothing for two seconds has timed out.
    virtual void types(QObject *context, TypesHandler handler) = 0;
    /// The content in one of those forms, at most `maxBytes` of it.
    virtual void data(const QString &type, qint64 maxBytes, QObject *context, DataHandler handler) = 0;

    /// Puts one content in several forms in the place of what was there; no
    /// form empties the pasteboard. It stays after its source program has
    /// ended. Fails silently where types() is Unavailable.
    virtual void write(const QList<PasteboardItem> &forms) = 0;
};

} // namespace orvelle
