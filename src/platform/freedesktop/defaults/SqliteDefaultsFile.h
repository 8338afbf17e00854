#pragma once

#include "platform/freedesktop/defaults/SqliteDefaultsTable.h"
#include "platform/freedesktop/defaults/SqliteUserDefaults.h"

namespace orvelle {

/// The settings' table as it could be opened, see SqliteUserDefaults::Opened.
struct OpenedDefaultsFile {
    std::unique_ptr<SqliteDefaultsTable> table;
    QByteArray path; ///< the database file, symbolic links followed
    std::optional<QString> damagedCopy;
    std::optional<DefaultsError> notWritable;
};

/// Opens or creates `defaults.sqlite` in `folder`, one process at a time.
Result<OpenedDefaultsFile, DefaultsOpenError> openDefaultsFile(const QString &folder, Timestamp now);

} // namespace orvelle
