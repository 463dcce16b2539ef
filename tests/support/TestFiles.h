// Scratch folders, files, environment variables and helper programs for the
// tests that touch the file system or start child processes; everything is
// undone when the test ends.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace testsupport {

namespace fs = std::filesystem;

inline std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void writeFile(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

// Every file below a folder as "relative/path" (with "=content" when asked), sorted.
inline std::vector<std::string> filesBelow(const fs::path& folder, bool withContents = false) {
    std::vector<std::string> files;
    if (fs::exists(folder))
        for (const auto& entry : fs::recursive_directory_iterator(folder))
            if (entry.is_regular_file()) {
                auto file = fs::relative(entry.path(), folder).string();
                files.push_back(withContents ? file + "=" + readFile(entry.path()) : file);
            }
    std::sort(files.begin(), files.end());
    return files;
}

// The names directly in a folder, sorted.
inline std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    if (fs::exists(folder))
        for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// What a step writes to standard output.
template <class Step>
std::string capturedStdout(Step&& step) {
    testing::internal::CaptureStdout();
    step();
    return testing::internal::GetCapturedStdout();
}

// A fresh folder under /tmp, removed with all it holds at the end of its scope.
struct ScratchFolder {
    ScratchFolder() {
        std::string pattern = "/tmp/jtk-test-XXXXXX";
        if (::mkdtemp(pattern.data())) path = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        if (!path.empty()) fs::remove_all(path, ignored);
    }
    fs::path path;
};

// Sets an environment variable (unsets it for nullptr) for one scope.
struct ScopedEnvironment {
    ScopedEnvironment(const char* name, const char* value) : name(name) {
        if (const char* previous = std::getenv(name)) old = previous;
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    }
    ~ScopedEnvironment() { old ? ::setenv(name, old->c_str(), 1) : ::unsetenv(name); }
    const char* name;
    std::optional<std::string> old;
};

// The folder of the test executables and the helper programs they start.
inline fs::path binDirectory() {
    if (const char* dir = std::getenv("JTK_BIN_DIR")) return dir;
    return fs::read_symlink("/proc/self/exe").parent_path();
}

// A text in single quotes for the shell.
inline std::string quoted(const std::string& text) {
    std::string result = "'";
    for (char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

// A text with every byte outside printable ASCII as \xNN, for test names.
inline std::string escaped(const std::string& text) {
    std::string out;
    char hex[8];
    for (unsigned char c : text) {
        std::snprintf(hex, sizeof hex, c >= 0x20 && c < 0x7f ? "%c" : "\\x%02X", c);
        out += hex;
    }
    return out;
}

}  // namespace testsupport
