#pragma once

namespace orvelle {

struct ExportData;

/// What a document says beside its links: the settings that travel, which
/// program and machine wrote it. Main thread.
class ExchangeSettings
{
public:
    virtual ~ExchangeSettings() = default;

    /// Fills in every section of settings, when they changed last, the
    /// program's version and the machine's name.
    virtual void gather(ExportData &document) const = 0;

    /// Takes over the sections that are there; a raw value that names nothing
    /// known here leaves its setting alone. Announces what changed. True when
    /// the document had a filled quick-launch slot.
    virtual bool apply(const ExportData &document) = 0;
};

} // namespace orvelle
