// Running the same benchmarks on other backends from one invocation: each
// backend links its own platform, so another backend's benchmarks are a
// program of their own, run as a child.
#pragma once

#include <string>
#include <vector>

namespace jtk::bench {

// Runs another benchmark program with this program's arguments plus a JSON
// report into a temporary file, its console output passing through, and
// the environment entries ("NAME=value") set in it only; returns the
// report's text, empty when the program could not run or failed.
std::string runPeerBenchmark(const std::string& program, int argc, char** argv,
                             const std::vector<std::string>& environment = {});

// Another backend's benchmark program. One that needs an X server (GTK 4)
// runs on the display DISPLAY names or, without one, on an Xvfb started for it.
struct PeerProgram {
    std::string backend;  // "Qt Widgets"
    std::string program;
    bool needsXServer = false;
};

// A peer's JSON report, under its backend's name.
struct PeerReport {
    std::string backend;
    std::string json;
};

// Runs each peer in turn, after a line naming it ("The same <what> on the
// Qt Widgets backend:"); a peer that could not run gets a line saying so
// ("(the Qt Widgets benchmark did not run: ...)") and no report.
std::vector<PeerReport> runPeerBenchmarks(const std::vector<PeerProgram>& peers, const char* what, int argc,
                                          char** argv);

}  // namespace jtk::bench
