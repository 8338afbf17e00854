#pragma once

#include <QObject>
#include <QPalette>

#include <optional>

namespace orvelle {

/// How the user wants the desktop to look. Main thread.
class Appearance : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// True when the desktop asks for dark windows; false when it asks for
    /// light ones or says nothing.
    virtual bool prefersDark() const = 0;

    /// True when the desktop asks for colours that stand out more than usual.
    virtual bool prefersHighContrast() const { return false; }

    /// The colours that the desktop gives its windows, where it tells them and
    /// the toolkit may not know them.
    virtual std::optional<QPalette> palette() const { return std::nullopt; }

signals:
    void changed();
};

} // namespace orvelle
