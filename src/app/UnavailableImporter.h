#pragma once

#include "ui/common/ExchangeImporter.h"
#include "ui/common/ExchangeDialogs.h"

namespace orvelle {

class Alerts;

/// Says that this version takes no documents in and writes none.
class UnavailableImporter : public ExchangeImporter, public ExchangeDialogs
{
public:
    explicit UnavailableImporter(Alerts &alerts) : m_alerts(alerts) {}

    void performFileImport(const QByteArray &data, Mode mode) override;
    void performFileSync(const QByteArray &data) override;
    void exportDocument(QWidget *) override { say(); }
    void importDocument(QWidget *) override { say(); }
    void importBookmarks(QWidget *) override { say(); }
    void exportBookmarks(QWidget *) override { say(); }
    void importLinkFolder(QWidget *) override { say(); }
    bool openDropped(const QStringList &, QWidget *) override { return false; }

private:
    void say();

    Alerts &m_alerts;
};

} // namespace orvelle
