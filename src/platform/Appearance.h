#pragma once

#include <QObject>

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

signals:
    void changed();
};

} // namespace orvelle
