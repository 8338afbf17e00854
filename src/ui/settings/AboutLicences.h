#pragma once

#include "base/Text.h"

#include <QList>
#include <QString>

#include <optional>

namespace orvelle {

/// Something that Orvelle consists of, and its licence.
struct AboutLicence {
    QString name;
    QString licence;  ///< short name, for example "LGPL-3.0"
    QString textFile; ///< where its text is (":/..." when compiled in); empty when the system keeps none
};

/// Orvelle itself, its icons, and the libraries it is linked to.
/// `documentFolders` are searched for the copyright files that packages leave
/// there, the first that has one wins.
QList<AboutLicence> aboutLicences(const QStringList &documentFolders);

/// The folders of package documentation on this system.
QStringList systemDocumentFolders();

/// The licence text; absent when it cannot be read. Reads at most 1 MiB.
std::optional<QString> licenceText(const AboutLicence &licence);

} // namespace orvelle
