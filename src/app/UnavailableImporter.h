#pragma once

#include "app/ExchangeImporter.h"

namespace orvelle {

class Alerts;

/// Says that this version does not import, and touches nothing.
class UnavailableImporter : public ExchangeImporter
{
public:
    explicit UnavailableImporter(Alerts &alerts) : m_alerts(alerts) {}

    void performFileImport(const QByteArray &data, Mode mode) override;
    void performFileSync(const QByteArray &data) override;

private:
    void say();

    Alerts &m_alerts;
};

} // namespace orvelle
