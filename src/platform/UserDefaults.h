#pragma once

#include "base/Result.h"
#include "base/Timestamp.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QStringList>

#include <optional>
#include <variant>

namespace orvelle {

using DefaultsValue =
    std::variant<bool, qint64, double, QString, QByteArray, Timestamp, QStringList, QList<QByteArray>, QList<qint64>>;

/// Why a change was not stored. The stored data is as it was before.
struct DefaultsError {
    enum class Kind {
        Conflict, ///< compareAndSet: the stored revision is another one
        ReadOnly, ///< the store or its folder may not be written
        DiskFull,
        Busy, ///< another process held the store too long
        Other,
    };
    Kind kind = Kind::Other;
    QString detail; ///< for the log and for a message, in the system's words
};

/// The application's settings store: typed values under text keys, shared by
/// every process of the user. Each change is atomic and durable when the call
/// returns. Main thread only.
class UserDefaults : public QObject
{
    Q_OBJECT

public:
    /// What is stored under a key and how often it has been changed. The
    /// revision of an absent key that never existed is 0; removing counts as
    /// a change.
    struct Versioned {
        std::optional<DefaultsValue> value;
        qint64 revision = 0;
        bool failed = false; ///< what is stored could not be read; the rest says nothing
    };
    /// The new revision.
    using WriteResult = Result<qint64, DefaultsError>;

    virtual Versioned read(const QString &key) const = 0;
    virtual WriteResult write(const QString &key, const DefaultsValue &value) = 0;
    virtual WriteResult remove(const QString &key) = 0;
    /// Writes only while the stored revision is still `expectedRevision`.
    virtual WriteResult compareAndSet(const QString &key, qint64 expectedRevision, const DefaultsValue &value) = 0;
    /// Every key that has a value, sorted by code point.
    virtual QStringList keys() const = 0;

    std::optional<DefaultsValue> value(const QString &key) const { return read(key).value; }

    /// The value when it is stored with exactly this type; absent otherwise.
    template<typename T>
    std::optional<T> get(const QString &key) const
    {
        const auto stored = value(key);
        if (!stored || !std::holds_alternative<T>(*stored))
            return std::nullopt;
        return std::get<T>(*stored);
    }

signals:
    /// Another process changed these keys. Not emitted for our own changes.
    void changedExternally(const QStringList &keys);
    /// A write of this process failed; whoever shows messages listens.
    void writeFailed(const QString &key, const orvelle::DefaultsError &error);
};

} // namespace orvelle
