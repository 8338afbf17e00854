#pragma once

#include <utility>
#include <variant>

namespace orvelle {

/// What an operation that can fail gives back: a value or an error, never
/// both. (The standard's own such type comes with C++23.)
///
///     Result<Bookmark, BookmarkError> r = create(path);
///     if (!r)
///         report(r.error());
template<typename T, typename E>
class [[nodiscard]] Result
{
public:
    Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
    Result(E error) : m_state(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return m_state.index() == 0; }
    bool hasValue() const { return m_state.index() == 0; }

    /// Only while hasValue() holds.
    const T &value() const & { return std::get<0>(m_state); }
    T &&value() && { return std::get<0>(std::move(m_state)); }
    const T &operator*() const & { return value(); }
    const T *operator->() const { return &value(); }

    /// Only while hasValue() does not hold.
    const E &error() const { return std::get<1>(m_state); }

private:
    std::variant<T, E> m_state;
};

} // namespace orvelle
