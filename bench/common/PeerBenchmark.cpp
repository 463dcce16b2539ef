#include "PeerBenchmark.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace jtk::bench {

std::string runPeerBenchmark(const std::string& program, int argc, char** argv) {
    std::error_code error;
    if (!std::filesystem::exists(program, error)) return {};
    char pattern[] = "/tmp/jtk-bench-XXXXXX";
    int descriptor = ::mkstemp(pattern);
    if (descriptor < 0) return {};
    ::close(descriptor);
    std::string out = std::string("--benchmark_out=") + pattern;
    std::vector<char*> arguments{const_cast<char*>(program.c_str())};
    for (int i = 1; i < argc; ++i) arguments.push_back(argv[i]);
    arguments.push_back(out.data());
    arguments.push_back(const_cast<char*>("--benchmark_out_format=json"));
    arguments.push_back(nullptr);
    std::fflush(stdout);
    pid_t child = ::fork();
    if (child == 0) {
        ::execv(program.c_str(), arguments.data());
        std::_Exit(127);
    }
    int status = 0;
    bool ran = child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    std::stringstream text;
    if (ran) text << std::ifstream(pattern).rdbuf();
    std::filesystem::remove(pattern, error);
    return text.str();
}

}  // namespace jtk::bench
