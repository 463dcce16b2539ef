// A recording launch (--jtk-record): the run starts as any run does (the
// user's data aside, the test data installed), runs only the tests a filter
// names (none without one), and then stays: the program goes on with the
// recorder's status item, for a person to record as many tests as they
// like, until the program quits or is stopped. Then the run ends as every
// run does, the user's data put back first.
#pragma once

#include <string>

namespace jtk {

// True when the launch asks for a recording session.
bool jtkRecordingLaunch();

// The refusal of a recording launch that has nowhere to record (the tests
// name no jtkThisFilePath); empty when the launch may go on.
std::string jtkRecordingLaunchRefusal(bool hasRecordingFile);

// After the tests, on the test queue: says the program is ready to record
// and keeps the run alive; never returns (the run ends with the program).
[[noreturn]] void jtkKeepRunningForRecording(const std::string& applicationName);

// True once the tests of a recording launch are over and the program is
// the person's to record on.
bool jtkRecordingSessionOpen();

// The end of a recording session by the program's own exit: a recording
// under way is finished (its marker line removed), and the run ends with status.
[[noreturn]] void jtkEndRecordingSession(int status);

}  // namespace jtk
