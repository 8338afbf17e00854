#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace orvelle {

/// What the maker's server says of the newest version.
struct UpdateInfo {
    /// A larger manifest is refused.
    static constexpr qint64 maxManifestBytes = qint64(64) * 1024;
    /// Longer versions, build numbers and dates are refused: they are shown.
    static constexpr qsizetype maxTextLength = 100;

    QString version;                    ///< "1.4.2"
    QString build;                      ///< "57"
    QUrl url;                           ///< the page to open for the download; always HTTPS
    std::optional<QString> releaseDate; ///< as published

    friend bool operator==(const UpdateInfo &, const UpdateInfo &) = default;
};

/// Reads a manifest, a JSON object with the texts "version", "build", "url"
/// and, if it likes, "releaseDate"; other members are ignored. Absent when one
/// is missing, of another type, too long or not printable, or when the page is
/// not an HTTPS address without credentials.
std::optional<UpdateInfo> decodeUpdateInfo(const QByteArray &manifest);

/// Compares two versions or build numbers. Runs of the digits 0 to 9 compare
/// as numbers of any length, everything else by code unit; a text that begins
/// with the whole other one is the greater: "1.9" < "1.10" < "1.10.0". Negative,
/// zero or positive, as `left` is less, equal or greater.
int compareVersions(QStringView left, QStringView right);

} // namespace orvelle
