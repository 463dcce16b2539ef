// What a recording check's tests library tells the check, on standard
// output: lines that start with "check: ", and the wait for a person's
// recording to start and to end.
#pragma once

#include <JTK/JTK.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

namespace loaded {

inline void report(const std::string& line) {
    std::printf("check: %s\n", line.c_str());
    std::fflush(stdout);
}

// Waits up to the limit for recording() to become wanted; false when it did not.
inline bool waitForRecording(bool wanted, std::chrono::seconds limit) {
    for (auto end = std::chrono::steady_clock::now() + limit; std::chrono::steady_clock::now() < end;) {
        if (jtk::JTKTestSuite::recording() == wanted) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

}  // namespace loaded
