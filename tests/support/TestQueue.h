// Runs a test body as a test run does: on a serial queue while the calling
// (main) thread runs the main run loop until the body has finished.
#pragma once

#include <functional>


namespace testsupport {

// Runs body on a fresh serial queue and services the main run loop meanwhile.
// Fails the current test if the body takes longer than timeoutSeconds.
void runOnTestQueue(const std::function<void()>& body, double timeoutSeconds = 60);

// Services the main run loop for a while (main thread only).
void pumpMainLoop(double seconds);

}  // namespace testsupport
