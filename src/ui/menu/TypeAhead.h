#pragma once

#include <QString>

#include <functional>

namespace orvelle {

/// `name` without case and accents, for comparing: "Été" gives "ete".
QString foldedName(const QString &name);

/// Finds rows by the first letters of their names. Letters typed within a
/// second of each other make one prefix; the same letter again and again steps
/// through the names that begin with it.
class TypeAhead
{
public:
    struct Rows {
        int count = 0;
        std::function<QString(int row)> name; ///< empty for a row that cannot be chosen
    };

    /// The row for `typed`, pressed at `milliseconds` of any clock; -1 when
    /// none begins so. `current` may be -1.
    int find(const Rows &rows, int current, const QString &typed, quint64 milliseconds);
    /// Whether `typed` goes on with a name that is just being typed; a blank
    /// does so in "Salt & pepper", where else it would choose the row.
    bool continues(const Rows &rows, const QString &typed, quint64 milliseconds) const;
    void reset() { m_prefix.clear(); }

private:
    QString m_prefix;
    quint64 m_last = 0;
};

} // namespace orvelle
