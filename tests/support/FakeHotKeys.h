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

    QString trigger; ///< what a desktop that decides itself has set
    QString desktopTrigger() const override { return trigger; }
    void userAllows(const QString &description)
    {
        trigger = description;
        emit hotKeyFound();
    }
    void userRefuses() { emit hotKeyLost({HotKeyError::Kind::Denied, 1}); }

    void userPresses()
    {
        if (registered)
            emit fired();
    }
};

} // namespace orvelle::test
