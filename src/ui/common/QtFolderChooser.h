#pragma once

#include "platform/Alerts.h"

namespace orvelle {

/// The desktop's folder dialog. Returns to the event loop at once.
class QtFolderChooser : public FolderChooser
{
public:
    void chooseFolder(const QString &message, const QString &confirmLabel, const QString &startFolder,
                      std::function<void(QString path)> done) override;
};

} // namespace orvelle
