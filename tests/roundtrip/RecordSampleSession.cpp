// Records one session of a person working in the Sample into a copy of a
// test source file: clicks, a double click, a shift click, a drag of the
// volume slider, a pop-up choice, a menu shortcut and typed text with Tab
// and Return, all posted as window-server events. Prints the state the
// Sample ends in, in the form the replayed test file prints it.
//
//   RecordSampleSession template output [state-file]
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/WindowServer.h"
#include "SampleApp.h"
#include "recorder/JTKRecorder.h"
#include "tests/support/PostedGestures.h"

namespace {

using namespace jtk;
using platform::EventType;
using platform::Point;

// Screen points of the Sample's main window, whose content area starts at (100, 200).
Point inWindow(double x, double y) { return {100 + x, 200 + y}; }

using testsupport::postMouseAt;
using testsupport::pressKey;
using testsupport::typeCharacters;
void click(Point at, int64_t clickState = 1, uint64_t flags = 0) { testsupport::pressAt(at, clickState, flags); }
// Lets the main loop handle everything posted so far (a menu tracks inside it).
void settle() {
    if (!testsupport::settleEvents()) std::fprintf(stderr, "RecordSampleSession: events were not handled\n");
}

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
    postMouseAt(EventType::leftMouseDown, inWindow(41, 260));
    for (double x = 42; x <= 121; x += 1) postMouseAt(EventType::leftMouseDragged, inWindow(x, 260));
    postMouseAt(EventType::leftMouseUp, inWindow(121, 260));
    settle();
    // The colour pop-up opens below itself; Green is its second row.
    click(inWindow(95, 223));
    click(inWindow(40, 210 - desktop::Menu::rowHeight * 1.5));
    settle();
    pressKey(45, platform::eventFlags::command);  // command-N: New Document
    settle();
    click(inWindow(98, 300));  // the first name field, off its centre
    settle();
    typeCharacters("Ada \"Countess\" \\ \xF0\x9F\x98\x80");
    pressKey(48);  // Tab: on to the last name
    typeCharacters("Lovelace");
    pressKey(36);  // Return
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
