#include "widgets/clipboard/ClipboardTypes.h"

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

/// Parts of the names of marks, in lower case and without punctuation, so that
/// "org.nspasteboard.ConcealedType" and "application/x-nspasteboard-concealed-type"
/// are one.
constexpr std::array secretMarks{
    "passwordmanagerhint"_L1,
    "concealedtype"_L1,
    "transienttype"_L1,
    "transientpasteboardtype"_L1,
    "onepassword"_L1,
    "clipboardviewerignore"_L1,
    "excludeclipboardcontentfrommonitorprocessing"_L1,
};

constexpr std::array rtfNames{"text/rtf"_L1, "application/rtf"_L1, "application/x-rtf"_L1};

constexpr std::array imageNames{"image/png"_L1, "image/tiff"_L1,     "image/jpeg"_L1,  "image/webp"_L1,
                                "image/bmp"_L1, "image/x-MS-bmp"_L1, "image/x-bmp"_L1, "image/gif"_L1};

QString bareName(const QString &type)
{
    QString bare;
    for (const QChar c : type) {
        if (c.isLetterOrNumber())
            bare += c.toLower();
    }
    return bare;
}

template<std::size_t N>
QString firstOffered(const std::array<QLatin1StringView, N> &names, const QStringList &types)
{
    const auto found = std::ranges::find_if(names, [&types](QLatin1StringView name) { return types.contains(name); });
    return found == names.end() ? QString() : QString(*found);
}

} // namespace

bool isMarkedSecret(const QStringList &types)
{
    return std::ranges::any_of(types, [](const QString &type) {
        const QString bare = bareName(type);
        return std::ranges::any_of(secretMarks, [&bare](QLatin1StringView mark) { return bare.contains(mark); });
    });
}

QString offeredRtf(const QStringList &types)
{
    return firstOffered(rtfNames, types);
}

QString offeredImage(const QStringList &types)
{
    return firstOffered(imageNames, types);
}

} // namespace orvelle
