#pragma once

#include <QByteArray>

namespace orvelle {

/// Takes an exchange document into the tree. Results and failures are shown by
/// the importer itself. Main thread.
class ExchangeImporter
{
public:
    enum class Mode { ReplaceAll, Merge };

    virtual ~ExchangeImporter() = default;
    virtual void performFileImport(const QByteArray &data, Mode mode) = 0;
    virtual void performFileSync(const QByteArray &data) = 0;
};

} // namespace orvelle
