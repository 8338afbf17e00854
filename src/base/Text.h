#pragma once

#include <QString>

#include <string_view>

namespace orvelle {

/// A key of the text table ("menu.settings"). Made only by the `_text`
/// literal, so that a test can compare every key of the sources with the
/// translations in resources/i18n.
struct TextKey {
    const char *id = nullptr;
    friend bool operator==(const TextKey &a, const TextKey &b) { return qstrcmp(a.id, b.id) == 0; }
};

inline namespace literals {
consteval TextKey operator""_text(const char *id, std::size_t)
{
    return {id};
}
} // namespace literals

/// The text behind `key` in the application's language; the key itself when no
/// translation is loaded.
QString text(TextKey key);

/// The same with the one placeholder of the key ("%@" or "%lld") filled in.
QString text(TextKey key, const QString &argument);
QString text(TextKey key, qlonglong argument);

/// Valid UTF-8 as text, whole: NUL and a byte order mark are characters like
/// any other.
QString textFromUtf8(std::string_view utf8);

} // namespace orvelle
