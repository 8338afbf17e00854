#include "platform/freedesktop/folder/ConflictCopies.h"

#include <QRegularExpression>

#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

/// What stands between the stem and the ending of the name. None has anything
/// that repeats within something that repeats.
constexpr std::array between = {
    // "(conflicted copy 2024-01-01 120000)", "(Ann's conflicted copy 2024-01-01)", with a number after a second one
    R"( \([^()]{0,100}conflicted copy[^()]{0,100}\)(?: \(\d{1,3}\))?)",
    R"( \([^()]{0,100}copie en conflit[^()]{0,100}\)(?: \(\d{1,3}\))?)",
    R"( \([^()]{0,100}in konflikt stehende kopie[^()]{0,100}\)(?: \(\d{1,3}\))?)",
    // "(conflict 2024-01-01 120000)", "(conflict on 2024-01-01)", "(conflict)", "(conflict 2)"
    R"( \(conflict(?:[ _-][^()]{0,100})?\))",
    // "(SFConflict ann@example.org 2024-01-01-12-00-00)"
    R"( \(sfconflict [^()]{1,100}\))",
    // ".sync-conflict-20240101-120000-ABCDEFG", and without machine as it once was
    R"(\.sync-conflict-\d{8}-\d{6}(?:-[a-z0-9]{1,16})?)",
    // "_conflict-20240101-120000", "_conflict-ann-20240101-120000"
    R"(_conflict-[\w.@-]{1,100})",
    // " [conflicted]", " [conflicted](1)"
    R"( ?\[conflicted\](?:\(\d{1,3}\))?)",
    // ".conflict", "-conflict", "-conflict-2", ".Conflict.1"
    R"([.-]conflict(?:ed)?(?:[._-]?\d{1,14}){0,3})",
};
/// What follows the whole name.
constexpr std::array behind = {R"([._-]conflict(?:ed)?(?:[._-]?\d{1,14}){0,3})"};

template<std::size_t n>
QRegularExpression anyOf(const std::array<const char *, n> &patterns)
{
    QStringList all;
    for (const char *each : patterns)
        all += QString::fromLatin1(each);
    return QRegularExpression(QRegularExpression::anchoredPattern(u"(?:"_s + all.join(u'|') + u")"_s),
                              QRegularExpression::CaseInsensitiveOption);
}

struct Parts {
    QString stem;
    QString ending; ///< with its dot
};

Parts partsOf(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? Parts{name.first(dot), name.sliced(dot)} : Parts{name, {}};
}

} // namespace

bool isConflictCopy(const QString &candidate, const QString &name)
{
    const auto [stem, ending] = partsOf(name);
    if (candidate.size() <= name.size() || candidate.size() > 255 || !candidate.startsWith(stem))
        return false;
    static const QRegularExpression inside = anyOf(between);
    static const QRegularExpression after = anyOf(behind);
    if (candidate.startsWith(name) && after.match(candidate.sliced(name.size())).hasMatch())
        return true;
    return candidate.endsWith(ending) &&
           inside.match(candidate.sliced(stem.size(), candidate.size() - name.size())).hasMatch();
}

QString conflictCopyName(const QString &name, const QString &stamp)
{
    const auto [stem, ending] = partsOf(name);
    return stem + u" (conflicted copy "_s + stamp + u')' + ending;
}

} // namespace orvelle
