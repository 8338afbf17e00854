#pragma once

#include "platform/Alerts.h"

#include <QObject>
#include <QPointer>

#include <deque>

class QDialog;

namespace orvelle {

/// Alerts as windows of their own, one after the other, without a nested
/// event loop. The texts are shown as plain text, so that a name from outside
/// cannot bring markup along.
class MessageAlerts : public QObject, public Alerts
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~MessageAlerts() override;

    /// The window of an alert has the object name "Alert".
    void show(const Alert &alert, std::function<void(int button)> chosen = {}) override;

private:
    struct Waiting {
        Alert alert;
        std::function<void(int)> chosen;
    };
    void showNext();
    void finish(int button);

    std::deque<Waiting> m_queue; ///< the first is the one on screen
    QPointer<QDialog> m_dialog;
};

} // namespace orvelle
