#pragma once

#include <memory>

// A word of Qt that is a member's name in GIO's headers.
#pragma push_macro("signals")
#undef signals
#include <gio/gio.h>
#pragma pop_macro("signals")

namespace orvelle {

struct UnrefObject {
    void operator()(void *object) const { g_object_unref(object); }
};
/// Owns a reference to a GObject.
template<typename T>
using ObjectPtr = std::unique_ptr<T, UnrefObject>;

struct FreeGMemory {
    void operator()(void *memory) const { g_free(memory); }
};
/// Owns a text that GLib has allocated.
using GText = std::unique_ptr<char, FreeGMemory>;

struct FreeGError {
    void operator()(GError *error) const { g_error_free(error); }
};
using GErrorPtr = std::unique_ptr<GError, FreeGError>;

} // namespace orvelle
