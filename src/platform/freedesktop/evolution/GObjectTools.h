#pragma once

#include "platform/freedesktop/GLibPointers.h"

#include <QByteArray>

#include <functional>

// Words of Qt that are names in libecal's headers.
#undef signals
#undef slots

namespace orvelle {

/// A reference to a GObject, which may be given up on any thread.
template<typename T>
using GPointer = std::shared_ptr<T>;

/// Takes over the caller's reference; null stays null.
template<typename T>
GPointer<T> owned(T *object)
{
    return object ? GPointer<T>(object, [](T *each) { g_object_unref(each); }) : GPointer<T>();
}

/// Calls `heard` with each emission, whatever the signal carries, until the
/// object is gone.
void listen(gpointer object, const char *signal, std::function<void()> heard);

/// Takes the place of `GError **`; empty until something fails.
class GFailure
{
public:
    GFailure() = default;
    Q_DISABLE_COPY_MOVE(GFailure)
    ~GFailure() { g_clear_error(&m_error); }
    GError **out() { return &m_error; }
    explicit operator bool() const { return m_error != nullptr; }
    bool isCancellation() const { return g_error_matches(m_error, G_IO_ERROR, G_IO_ERROR_CANCELLED); }
    /// For the log: the message itself may name a calendar.
    QByteArray kind() const
    {
        return m_error ? QByteArray(g_quark_to_string(m_error->domain)) + ' ' + QByteArray::number(m_error->code)
                       : QByteArray();
    }

private:
    GError *m_error = nullptr;
};

} // namespace orvelle
