#include "Figures.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace orvelle::bench {

double percentile(QList<double> values, double p)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    const auto rank = static_cast<qsizetype>(std::ceil(p * static_cast<double>(values.size())));
    return values.at(std::clamp<qsizetype>(rank - 1, 0, values.size() - 1));
}

bool writeJson(const QString &path, const QList<Series> &series)
{
    QJsonObject root;
    for (const Series &one : series) {
        QJsonArray values;
        for (const double value : one.values)
            values.append(value);
        root.insert(one.name, QJsonObject{{QStringLiteral("unit"), one.unit},
                                          {QStringLiteral("median"), percentile(one.values, 0.5)},
                                          {QStringLiteral("p95"), percentile(one.values, 0.95)},
                                          {QStringLiteral("values"), values}});
    }
    QFile file(path);
    const QByteArray json = QJsonDocument(root).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size()) {
        std::fprintf(stderr, "cannot write %s: %s\n", qPrintable(path), qPrintable(file.errorString()));
        return false;
    }
    return true;
}

} // namespace orvelle::bench
