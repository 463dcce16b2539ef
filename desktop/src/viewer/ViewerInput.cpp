#include "viewer/ViewerInput.h"

#include <array>
#include <cctype>
#include <string>
#include <utility>

#include "JTK/desktop/KeyboardLayout.h"

namespace jtk::desktop {

namespace {

using platform::Event;
using platform::EventType;
namespace flags = platform::eventFlags;

// Keys that type nothing but have a virtual key code of their own.
constexpr std::array<std::pair<SDL_Keycode, uint16_t>, 28> namedKeys{{
    {SDLK_RETURN, keyCodes::returnKey}, {SDLK_KP_ENTER, 76}, {SDLK_TAB, keyCodes::tab},
    {SDLK_BACKSPACE, keyCodes::deleteKey}, {SDLK_ESCAPE, keyCodes::escape}, {SDLK_DELETE, 117},
    {SDLK_LEFT, keyCodes::leftArrow}, {SDLK_RIGHT, keyCodes::rightArrow}, {SDLK_DOWN, 125}, {SDLK_UP, 126},
    {SDLK_HOME, 115}, {SDLK_END, 119}, {SDLK_PAGEUP, 116}, {SDLK_PAGEDOWN, 121}, {SDLK_HELP, 114},
    {SDLK_F1, 122}, {SDLK_F2, 120}, {SDLK_F3, 99}, {SDLK_F4, 118}, {SDLK_F5, 96}, {SDLK_F6, 97},
    {SDLK_F7, 98}, {SDLK_F8, 100}, {SDLK_F9, 101}, {SDLK_F10, 109}, {SDLK_F11, 103}, {SDLK_F12, 111},
    {SDLK_INSERT, 114},
}};

bool typesText(SDL_Keycode key) { return key >= ' ' && key < 0x7f; }

// The UTF-8 sequences of a text, one per code point; a stray byte stands alone.
std::vector<std::string> codePoints(const std::string& text) {
    std::vector<std::string> result;
    for (size_t i = 0; i < text.size();) {
        auto lead = static_cast<unsigned char>(text[i]);
        size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xe ? 3 : (lead >> 3) == 0x1e ? 4 : 1;
        if (i + length > text.size()) length = text.size() - i;
        result.push_back(text.substr(i, length));
        i += length;
    }
    return result;
}

}  // namespace

std::optional<uint16_t> ViewerInput::keyCodeForKey(SDL_Keycode key) {
    for (const auto& [sdlKey, code] : namedKeys)
        if (sdlKey == key) return code;
    // SDL names a printable key by the character it types without shift.
    if (typesText(key)) return keyCodeForCharacter(static_cast<char>(key));
    return std::nullopt;
}

uint64_t ViewerInput::flagsForModifiers(uint16_t modifiers) {
    uint64_t result = 0;
    if (modifiers & KMOD_SHIFT) result |= flags::shift;
    if (modifiers & KMOD_CTRL) result |= flags::command;
    if (modifiers & KMOD_GUI) result |= flags::control;
    if (modifiers & KMOD_ALT) result |= flags::alternate;
    return result;
}

void ViewerInput::updateModifiers(uint16_t modifiers, std::vector<Event>& out) {
    uint64_t now = flagsForModifiers(modifiers);
    if (now == flags_) return;
    flags_ = now;
    Event changed;
    changed.type = EventType::flagsChanged;
    changed.keyCode = platform::noKeyCode;
    changed.flags = flags_;
    changed.location = lastPoint_;
    out.push_back(changed);
}

Event ViewerInput::mouseEvent(EventType type, int x, int y) const {
    Event event;
    event.type = type;
    event.location = {double(x), double(y)};
    event.flags = flags_;
    return event;
}

void ViewerInput::translateKey(const SDL_KeyboardEvent& key, std::vector<Event>& out) {
    updateModifiers(key.keysym.mod, out);
    auto code = keyCodeForKey(key.keysym.sym);
    if (!code) return;
    // A printable key without command or control comes back as text input.
    if (typesText(key.keysym.sym) && !(flags_ & (flags::command | flags::control))) return;
    Event event;
    event.type = key.type == SDL_KEYDOWN ? EventType::keyDown : EventType::keyUp;
    event.keyCode = *code;
    event.flags = flags_;
    event.location = lastPoint_;
    out.push_back(event);
}

void ViewerInput::translateText(const char* text, std::vector<Event>& out) const {
    // With command or control held, the key event has posted the key already.
    if (flags_ & (flags::command | flags::control)) return;
    for (const auto& character : codePoints(text)) {
        Event event;
        event.type = EventType::keyDown;
        event.keyCode = 0;
        if (character.size() == 1)
            event.keyCode = keyCodeForCharacter(char(std::tolower(static_cast<unsigned char>(character[0])))).value_or(0);
        event.flags = flags_;
        event.unicodeText = character;
        event.location = lastPoint_;
        out.push_back(event);
        event.type = EventType::keyUp;
        out.push_back(event);
    }
}

std::vector<Event> ViewerInput::translate(const SDL_Event& event) {
    std::vector<Event> out;
    switch (event.type) {
        case SDL_MOUSEMOTION:
            lastPoint_ = {double(event.motion.x), double(event.motion.y)};
            out.push_back(mouseEvent(leftDown_ ? EventType::leftMouseDragged : EventType::mouseMoved, event.motion.x,
                                     event.motion.y));
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP: {
            const auto& button = event.button;
            bool down = event.type == SDL_MOUSEBUTTONDOWN;
            lastPoint_ = {double(button.x), double(button.y)};
            Event posted;
            if (button.button == SDL_BUTTON_LEFT) {
                leftDown_ = down;
                posted = mouseEvent(down ? EventType::leftMouseDown : EventType::leftMouseUp, button.x, button.y);
            } else if (button.button == SDL_BUTTON_RIGHT) {
                posted = mouseEvent(down ? EventType::rightMouseDown : EventType::rightMouseUp, button.x, button.y);
                posted.button = platform::MouseButton::right;
            } else {
                break;
            }
            posted.clickState = button.clicks;
            out.push_back(posted);
            break;
        }
        case SDL_MOUSEWHEEL: {
            double notches = event.wheel.preciseY;
            if (event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED) notches = -notches;
            if (notches == 0) break;
            Event wheel = mouseEvent(EventType::scrollWheel, int(lastPoint_.x), int(lastPoint_.y));
            wheel.scrollDeltaY = notches * wheelStepPoints;
            out.push_back(wheel);
            break;
        }
        case SDL_KEYDOWN:
        case SDL_KEYUP:
            translateKey(event.key, out);
            break;
        case SDL_TEXTINPUT:
            translateText(event.text.text, out);
            break;
        default:
            break;
    }
    return out;
}

}  // namespace jtk::desktop
