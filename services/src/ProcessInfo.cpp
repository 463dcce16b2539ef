#include "JTK/services/ProcessInfo.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>
#include <sstream>

namespace jtk::services {

namespace {

struct ArgumentStore {
    std::mutex mutex;
    std::optional<std::vector<std::string>> arguments;
};

ArgumentStore& argumentStore() {
    static auto* store = new ArgumentStore;  // never destroyed: read until the process ends
    return *store;
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The leading "12.8.1" of a text such as "12.8.1-amd64", split at the dots.
std::vector<std::string> leadingVersionNumbers(const std::string& text) {
    std::vector<std::string> numbers;
    std::string current;
    for (char c : text) {
        if (std::isdigit(static_cast<unsigned char>(c))) {
            current += c;
        } else if (c == '.' && !current.empty()) {
            numbers.push_back(current);
            current.clear();
        } else {
            break;
        }
    }
    if (!current.empty()) numbers.push_back(current);
    return numbers;
}

// The value of KEY=value or KEY="value" in an os-release text.
std::string osReleaseValue(const std::string& osRelease, const std::string& key) {
    std::istringstream lines(osRelease);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(key + "=", 0) != 0) continue;
        std::string value = line.substr(key.size() + 1);
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
            value = value.substr(1, value.size() - 2);
        return value;
    }
    return {};
}

std::string join(const std::vector<std::string>& numbers) {
    std::string out;
    for (const auto& n : numbers) out += (out.empty() ? "" : ".") + n;
    return out;
}

}  // namespace

void setProcessArguments(int argc, char** argv) {
    auto& store = argumentStore();
    std::lock_guard lock(store.mutex);
    if (argc <= 0 || !argv) {
        store.arguments.reset();
        return;
    }
    std::vector<std::string> arguments;
    for (int i = 0; i < argc; ++i) arguments.emplace_back(argv[i] ? argv[i] : "");
    store.arguments = std::move(arguments);
}

std::vector<std::string> readCommandLine(const std::filesystem::path& file) {
    std::string content = readFile(file);
    std::vector<std::string> arguments;
    size_t start = 0;
    while (start < content.size()) {
        size_t end = content.find('\0', start);
        if (end == std::string::npos) end = content.size();
        arguments.push_back(content.substr(start, end - start));
        start = end + 1;
    }
    return arguments;
}

// The rule: major.minor come from VERSION_ID of os-release ("12", "22.04"),
// a missing minor number being 0. Debian keeps only the major number there and
// the point release in /etc/debian_version ("12.8"), which is used instead when
// it starts with the same major number. The build is the numeric start of the
// kernel release ("6.1.0" of "6.1.0-28-amd64"). Nothing known gives 0.0 and 0.
std::string formatOperatingSystemVersion(const std::string& osRelease, const std::string& debianVersion,
                                         const std::string& kernelRelease) {
    auto version = leadingVersionNumbers(osReleaseValue(osRelease, "VERSION_ID"));
    auto debian = leadingVersionNumbers(debianVersion);
    if (debian.size() > version.size() && (version.empty() || debian.front() == version.front())) version = debian;
    if (version.empty()) version = {"0"};
    if (version.size() < 2) version.push_back("0");
    version.resize(2);

    auto build = leadingVersionNumbers(kernelRelease);
    if (build.empty()) build = {"0"};
    std::string text = "Version ";
    text.append(version[0]).append(".").append(version[1]).append(" (Build ").append(join(build)).append(")");
    return text;
}

}  // namespace jtk::services

namespace jtk::platform {

std::vector<std::string> processArguments() {
    auto& store = services::argumentStore();
    {
        std::lock_guard lock(store.mutex);
        if (store.arguments) return *store.arguments;
    }
    return services::readCommandLine("/proc/self/cmdline");
}

int processIdentifier() { return static_cast<int>(::getpid()); }

std::string operatingSystemVersionString() {
    std::string osRelease = services::readFile("/etc/os-release");
    if (osRelease.empty()) osRelease = services::readFile("/usr/lib/os-release");
    struct utsname system {};
    std::string kernel = ::uname(&system) == 0 ? system.release : "";
    return services::formatOperatingSystemVersion(osRelease, services::readFile("/etc/debian_version"), kernel);
}

void systemLog(const std::string& message) {
    std::string line = message;
    for (char& c : line)
        if (c == '\n' || c == '\r') c = ' ';
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

}  // namespace jtk::platform
