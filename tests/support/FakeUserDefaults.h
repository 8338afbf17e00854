#pragma once

#include "platform/UserDefaults.h"

#include <QMap>

namespace orvelle::test {

/// A settings store in memory.
class FakeUserDefaults : public UserDefaults
{
public:
    Versioned read(const QString &key) const override
    {
        return key == m_unreadable ? Versioned{std::nullopt, 0, true} : m_entries.value(key);
    }

    WriteResult write(const QString &key, const DefaultsValue &value) override { return store(key, value); }
    WriteResult remove(const QString &key) override { return store(key, std::nullopt); }

    WriteResult compareAndSet(const QString &key, qint64 expectedRevision, const DefaultsValue &value) override
    {
        if (read(key).revision != expectedRevision)
            return DefaultsError{DefaultsError::Kind::Conflict, {}};
        return store(key, value);
    }

    QStringList keys() const override
    {
        QStringList result;
        for (auto it = m_entries.begin(); it != m_entries.end(); ++it) {
            if (it->value)
                result += it.key();
        }
        return result;
    }

    /// Another process writes a key. Announced only by announceOutsideChanges().
    void otherProcessWrites(const QString &key, const DefaultsValue &value)
    {
        Versioned &entry = m_entries[key];
        entry.value = value;
        ++entry.revision;
        m_outsideChanges += key;
    }

    void announceOutsideChanges()
    {
        const QStringList changed = std::exchange(m_outsideChanges, {});
        if (!changed.isEmpty())
            emit changedExternally(changed);
    }

    /// From now on every write fails so; absent means writes work again.
    void failWrites(std::optional<DefaultsError> error) { m_failure = std::move(error); }

    /// From now on this key cannot be read; an empty one means all can.
    void failReads(const QString &key) { m_unreadable = key; }

    int writeCount() const { return m_writeCount; }

private:
    WriteResult store(const QString &key, std::optional<DefaultsValue> value)
    {
        if (m_failure) {
            emit writeFailed(key, *m_failure);
            return *m_failure;
        }
        ++m_writeCount;
        Versioned &entry = m_entries[key];
        entry.value = std::move(value);
        return ++entry.revision;
    }

    QMap<QString, Versioned> m_entries;
    QStringList m_outsideChanges;
    std::optional<DefaultsError> m_failure;
    QString m_unreadable;
    int m_writeCount = 0;
};

} // namespace orvelle::test
