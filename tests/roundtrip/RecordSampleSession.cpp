// Records one session of a person working in the Sample into a copy of a
// test source file: clicks, a double click, a shift click, a drag of the
// volume slider, a pop-up choice, a menu shortcut and typed text with Tab
// and Return, all posted as window-server events. Prints the state the
// Sample ends in, in the form the replayed test file prints it.
//
//   RecordSampleSession template output [state-file]
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/WindowServer.h"
#include "SampleApp.h"
#include "input/JTKKeyStrokes.h"
#include "recorder/JTKRecorder.h"

namespace {

using namespace jtk;
using platform::EventType;
using platform::Point;

// Screen points of the Sample's main window, whose content area starts at (100, 200).
Point inWindow(double x, double y) { return {100 + x, 200 + y}; }

void mouse(EventType type, Point at, int64_t clickState = 1, uint64_t flags = 0) {
    auto source = platform::createEventSource(platform::EventSourceState::privateState);
    auto event = platform::createMouseEvent(source, type, desktop::WindowServer::eventPointFromScreenPoint(at),
                                            platform::MouseButton::left);
    event->clickState = clickState;
    event->flags = flags;
    platform::postEvent(platform::EventTap::hid, *event);
}
void click(Point at, int64_t clickState = 1, uint64_t flags = 0) {
    mouse(EventType::leftMouseDown, at, clickState, flags);
    mouse(EventType::leftMouseUp, at, clickState, flags);
}
void key(uint16_t code, uint64_t flags = 0, const std::string& text = {}) {
    auto source = platform::createEventSource(platform::EventSourceState::privateState);
    for (bool down : {true, false}) {
        auto event = platform::createKeyboardEvent(source, code, down);
        event->flags = flags;
        event->unicodeText = text;
        platform::postEventToPid(::getpid(), *event);
    }
}
void type(const std::string& text) {
    for (const auto& character : jtkCharacters(text)) {
        auto stroke = jtkKeyStrokeForCharacter(character);
        key(stroke.keyCode, stroke.flags, stroke.unicodeText);
    }
}
// Lets the main loop handle everything posted so far (a menu tracks inside it).
void settle() { desktop::RunLoop::main().runFor(0.2); }

void session() {
    Point add = inWindow(70, 425), open = inWindow(70, 385), select = inWindow(70, 345);
    click(add);
    settle();
    click(add);
    settle();
    click(open, 1);
    click(open, 2);
    settle();
    click(select, 1, platform::eventFlags::shift);
    settle();
    // The volume slider (x 20 to 220): pressed at 41, dragged to 121.
    mouse(EventType::leftMouseDown, inWindow(41, 260));
    for (double x = 42; x <= 121; x += 1) mouse(EventType::leftMouseDragged, inWindow(x, 260));
    mouse(EventType::leftMouseUp, inWindow(121, 260));
    settle();
    // The colour pop-up opens below itself; Green is its second row.
    click(inWindow(95, 223));
    click(inWindow(40, 210 - desktop::Menu::rowHeight * 1.5));
    settle();
    key(45, platform::eventFlags::command);  // command-N: New Document
    settle();
    click(inWindow(98, 300));  // the first name field, off its centre
    settle();
    type("Ada \"Countess\" \\ \xF0\x9F\x98\x80");
    key(48);  // Tab: on to the last name
    type("Lovelace");
    key(36);  // Return
    settle();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s template output [state-file]\n", argv[0]);
        return 2;
    }
    namespace fs = std::filesystem;
    fs::path output = argv[2];
    std::error_code error;
    fs::create_directories(output.parent_path(), error);
    fs::copy_file(argv[1], output, fs::copy_options::overwrite_existing, error);
    std::string message;
    if (error || jtkInsertRecordingMethod(output, message) != JTKRecordingMethodResult::inserted) {
        std::fprintf(stderr, "cannot prepare %s: %s%s\n", output.c_str(), error.message().c_str(), message.c_str());
        return 2;
    }

    auto application = desktop::Application::shared();
    sample::SampleApp app;
    application->activateIgnoringOtherApps(true);
    auto recorder = JTKRecorder::make(output);
    if (!recorder) return 2;
    JTKTestSuite::setRecorder(recorder);
    recorder->backdateStart(JTKRecorder::startDelay);
    session();
    recorder->stop();
    JTKTestSuite::setRecorder(nullptr);

    if (argc > 3) {
        std::ofstream state(argv[3]);
        for (const char* name : {"Count", "DoubleClicks", "Selection", "Volume", "ColourChoice", "Documents", "FirstName",
                                 "LastName", "FullName"})
            state << "State: " << name << " = " << JTKTestSuite::element(name).value() << "\n";
    }
    return 0;
}
