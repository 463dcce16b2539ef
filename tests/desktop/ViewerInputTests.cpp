// The viewer's side that needs no display: SDL input as desktop events, when
// a launch asks for the viewer, and a launch without a display staying headless.
#include <SDL.h>
#include <gmock/gmock.h>

#include <cstdio>

#include "JTK/desktop/Viewer.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/TestFiles.h"
#include "viewer/ViewerInput.h"

using namespace testsupport;

namespace {

SDL_Event motion(int x, int y) {
    SDL_Event e{};
    e.type = SDL_MOUSEMOTION;
    e.motion.x = x;
    e.motion.y = y;
    return e;
}
SDL_Event button(bool down, uint8_t which, int x, int y, uint8_t clicks = 1) {
    SDL_Event e{};
    e.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
    e.button.button = which;
    e.button.x = x;
    e.button.y = y;
    e.button.clicks = clicks;
    return e;
}
SDL_Event wheel(float notches, bool flipped = false) {
    SDL_Event e{};
    e.type = SDL_MOUSEWHEEL;
    e.wheel.preciseY = notches;
    e.wheel.direction = flipped ? SDL_MOUSEWHEEL_FLIPPED : SDL_MOUSEWHEEL_NORMAL;
    return e;
}
SDL_Event key(bool down, SDL_Keycode sym, uint16_t mod = 0) {
    SDL_Event e{};
    e.type = down ? SDL_KEYDOWN : SDL_KEYUP;
    e.key.type = e.type;
    e.key.keysym.sym = sym;
    e.key.keysym.mod = mod;
    return e;
}
SDL_Event text(const char* characters) {
    SDL_Event e{};
    e.type = SDL_TEXTINPUT;
    SDL_strlcpy(e.text.text, characters, sizeof e.text.text);
    return e;
}

// One desktop event as a short line: type, then only what is set.
std::string describe(const platform::Event& e) {
    static const std::map<EventType, const char*> names{
        {EventType::leftMouseDown, "leftDown"}, {EventType::leftMouseUp, "leftUp"},
        {EventType::rightMouseDown, "rightDown"}, {EventType::rightMouseUp, "rightUp"},
        {EventType::mouseMoved, "moved"}, {EventType::leftMouseDragged, "dragged"},
        {EventType::keyDown, "keyDown"}, {EventType::keyUp, "keyUp"},
        {EventType::flagsChanged, "flags"}, {EventType::scrollWheel, "wheel"}};
    std::string out = names.at(e.type);
    auto add = [&](const char* format, auto... values) {
        char text[64];
        std::snprintf(text, sizeof text, format, values...);
        out += text;
    };
    if (e.type == EventType::keyDown || e.type == EventType::keyUp)
        add(" key=%d", e.keyCode);
    else if (e.type != EventType::flagsChanged)
        add(" %g,%g", e.location.x, e.location.y);
    if (e.clickState) add(" clicks=%lld", static_cast<long long>(e.clickState));
    if (e.button == platform::MouseButton::right) out += " right";
    if (e.scrollDeltaY != 0) add(" dy=%g", e.scrollDeltaY);
    if (e.flags) add(" flags=%llx", static_cast<unsigned long long>(e.flags));
    if (!e.unicodeText.empty()) out += " text=" + e.unicodeText;
    return out;
}

struct InputCase {
    std::string label;
    std::vector<SDL_Event> input;
    std::vector<std::string> posted;  // every desktop event, in order
};

std::ostream& operator<<(std::ostream& out, const InputCase& c) { return out << c.label; }

class ViewerInputTranslation : public ::testing::TestWithParam<InputCase> {};

TEST_P(ViewerInputTranslation, postsTheDesktopEventsAPersonMeans) {
    desktop::ViewerInput input;
    std::vector<std::string> posted;
    for (const auto& event : GetParam().input)
        for (const auto& out : input.translate(event)) posted.push_back(describe(out));
    EXPECT_THAT(posted, ::testing::ElementsAreArray(GetParam().posted));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ViewerInputTranslation,
    ::testing::Values(
        InputCase{"moveWithoutButton", {motion(10, 20)}, {"moved 10,20"}},
        InputCase{"leftPressMoveRelease",
                  {button(true, SDL_BUTTON_LEFT, 5, 6), motion(7, 8), button(false, SDL_BUTTON_LEFT, 7, 8), motion(9, 9)},
                  {"leftDown 5,6 clicks=1", "dragged 7,8", "leftUp 7,8 clicks=1", "moved 9,9"}},
        InputCase{"doubleClickCount", {button(true, SDL_BUTTON_LEFT, 3, 4, 2)}, {"leftDown 3,4 clicks=2"}},
        InputCase{"rightButtonNoDrag",
                  {button(true, SDL_BUTTON_RIGHT, 1, 2), motion(3, 3), button(false, SDL_BUTTON_RIGHT, 3, 3)},
                  {"rightDown 1,2 clicks=1 right", "moved 3,3", "rightUp 3,3 clicks=1 right"}},
        InputCase{"middleButtonIgnored", {button(true, SDL_BUTTON_MIDDLE, 1, 2)}, {}},
        InputCase{"wheelAtThePointer", {motion(50, 60), wheel(1), wheel(-0.5f, true)},
                  {"moved 50,60", "wheel 50,60 dy=24", "wheel 50,60 dy=12"}},
        InputCase{"namedKeysByCode",
                  {key(true, SDLK_RETURN), key(false, SDLK_RETURN), key(true, SDLK_BACKSPACE), key(true, SDLK_LEFT),
                   key(true, SDLK_F13)},
                  {"keyDown key=36", "keyUp key=36", "keyDown key=51", "keyDown key=123"}},
        InputCase{"ctrlIsCommandAndTypesNoText",
                  {key(true, SDLK_LCTRL, KMOD_LCTRL), key(true, SDLK_s, KMOD_LCTRL), text("s"),
                   key(false, SDLK_s, KMOD_LCTRL), key(false, SDLK_LCTRL)},
                  {"flags flags=100000", "keyDown key=1 flags=100000", "keyUp key=1 flags=100000", "flags"}},
        InputCase{"superIsControlAltIsAlternate", {key(true, SDLK_LGUI, KMOD_LGUI | KMOD_RALT)}, {"flags flags=c0000"}},
        InputCase{"plainLetterComesAsText", {key(true, SDLK_b), text("b"), key(false, SDLK_b)},
                  {"keyDown key=11 text=b", "keyUp key=11 text=b"}},
        InputCase{"shiftedLetterKeepsShift", {key(true, SDLK_LSHIFT, KMOD_LSHIFT), key(true, SDLK_b, KMOD_LSHIFT), text("B")},
                  {"flags flags=20000", "keyDown key=11 flags=20000 text=B", "keyUp key=11 flags=20000 text=B"}},
        InputCase{"anyCharacterOnePerCodePoint", {text("\xC3\xA9\xE2\x82\xAC")},
                  {"keyDown key=0 text=\xC3\xA9", "keyUp key=0 text=\xC3\xA9", "keyDown key=0 text=\xE2\x82\xAC",
                   "keyUp key=0 text=\xE2\x82\xAC"}}),
    [](const auto& info) { return info.param.label; });

struct RequestCase {
    std::vector<std::string> arguments;
    const char* environment;
    bool requested;
};

TEST(ViewerRequest, argumentOrEnvironmentAskForIt) {
    const RequestCase cases[] = {
        {{"app"}, nullptr, false},
        {{"app", "uxtest", "--viewer"}, nullptr, true},
        {{"--viewer"}, nullptr, false},  // the program's own name asks for nothing
        {{"app", "--viewer=no"}, nullptr, false},
        {{"app"}, "1", true},
        {{"app"}, "0", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(desktop::viewerRequestedBy(c.arguments, c.environment), c.requested)
            << ::testing::PrintToString(c.arguments) << " JTK_VIEWER=" << (c.environment ? c.environment : "(unset)");
}

using Viewer = DesktopTest;

TEST_F(Viewer, withoutADisplaySaysSoInOneLineAndStaysHeadless) {
    ScopedEnvironment display("DISPLAY", nullptr), wayland("WAYLAND_DISPLAY", nullptr),
        driver("SDL_VIDEODRIVER", nullptr);
    ::testing::internal::CaptureStderr();
    bool attached = desktop::attachViewer();
    std::string message = ::testing::internal::GetCapturedStderr();
    EXPECT_FALSE(attached);
    EXPECT_FALSE(desktop::isViewerAttached());
    EXPECT_EQ(message, "JTK viewer: cannot open a window (DISPLAY is not set); the desktop runs headless\n");
}

}  // namespace
