#pragma once

#include "platform/HotKeyService.h"

namespace orvelle::test {

/// A keyboard whose combinations other programs may hold.
class FakeHotKeys : public HotKeyService
{
public:
    std::optional<HotKey> registered;
    std::optional<HotKeyError> refusal; ///< of every registration from now on

    std::optional<HotKeyError> registerHotKey(const HotKey &hotKey) override
    {
        registered = refusal ? std::nullopt : std::optional(hotKey);
        return refusal;
    }
    void unregisterHotKey() override { registered.reset(); }

    void userPresses()
    {
        if (registered)
            emit fired();
    }
};

} // namespace orvelle::test
