// Running the same benchmarks on another backend from one invocation: each
// backend links its own platform, so the other backend's benchmarks are a
// program of their own, run as a child.
#pragma once

#include <string>

namespace jtk::bench {

// Runs another benchmark program with this program's arguments plus a JSON
// report into a temporary file, its console output passing through; returns
// the report's text, empty when the program could not run or failed.
std::string runPeerBenchmark(const std::string& program, int argc, char** argv);

}  // namespace jtk::bench
