// The person's input in the viewer window as the desktop's own events. Pure
// translation with a little state (modifiers held, left button down): it asks
// SDL nothing, so it works on events made by hand.
//
// Mapping: window pixel (x, y) is event point (x, y); left and right buttons
// press and release with SDL's click count; moves with the left button down
// drag; one wheel notch scrolls wheelStepPoints (up shows what is above).
// Ctrl is command, Super is control, Alt is alternate, Shift is shift; a
// change of them is a flags-changed event. Keys that type nothing (Return,
// Tab, Backspace, arrows, function keys) and keys pressed with command or
// control are posted by their virtual key code; typed text comes from SDL's
// text input, one key press and release per character carrying the character.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "JTK/platform/Events.h"

namespace jtk::desktop {

inline constexpr double wheelStepPoints = 24;

class ViewerInput {
public:
    // The desktop events one SDL event stands for, in posting order (often none).
    std::vector<platform::Event> translate(const SDL_Event& event);
    uint64_t modifierFlags() const { return flags_; }

    // The virtual key code of an SDL key, if the desktop's layout has one.
    static std::optional<uint16_t> keyCodeForKey(SDL_Keycode key);
    static uint64_t flagsForModifiers(uint16_t modifiers);

private:
    void updateModifiers(uint16_t modifiers, std::vector<platform::Event>& out);
    platform::Event mouseEvent(platform::EventType type, int x, int y) const;
    void translateKey(const SDL_KeyboardEvent& key, std::vector<platform::Event>& out);
    void translateText(const char* text, std::vector<platform::Event>& out) const;

    uint64_t flags_ = 0;
    bool leftDown_ = false;
    platform::Point lastPoint_;
};

}  // namespace jtk::desktop
