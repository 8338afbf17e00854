#pragma once

#include <QJsonArray>
#include <QList>
#include <QString>

namespace orvelle::bench {

/// Measured values of one thing, all in one unit.
struct Series {
    QString name; ///< what script/bench looks it up by
    QString unit;
    QList<double> values;
};

/// The value below which the share `p` (0 to 1) of the values lies.
double percentile(QList<double> values, double p);

/// Writes the series with median, p95 and all values to `path`; false, with a
/// word on standard error, when that fails.
bool writeJson(const QString &path, const QList<Series> &series);

} // namespace orvelle::bench
