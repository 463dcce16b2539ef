// What the tests under a real X server need: a child process with pipes, a
// private Xvfb on a free display, xdotool runs, and the pixels of a window
// read back from the X server. Waits poll their condition up to a generous
// limit; nothing relies on a fixed sleep.
#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "JTK/imaging/Image.h"

extern char** environ;

namespace displaytest {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// Polls the condition every 20 ms until it holds or the time is up.
inline bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit = 20s) {
    auto deadline = Clock::now() + limit;
    while (!condition()) {
        if (Clock::now() > deadline) return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

// The executable's path when it is on PATH, else empty.
inline std::string findOnPath(const std::string& name) {
    const char* path = std::getenv("PATH");
    std::string folders = path ? path : "/usr/bin:/bin";
    for (size_t start = 0; start <= folders.size();) {
        size_t end = folders.find(':', start);
        if (end == std::string::npos) end = folders.size();
        std::string candidate = folders.substr(start, end - start) + "/" + name;
        if (::access(candidate.c_str(), X_OK) == 0) return candidate;
        start = end + 1;
    }
    return {};
}

// A child process with its standard input and output on pipes (standard
// error stays the test's). Extra environment entries override inherited ones;
// an empty value removes the variable. Killed when it goes out of scope.
class Child {
public:
    Child(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment = {}) {
        int in[2], out[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) return;
        std::map<std::string, std::string> merged;
        for (char** entry = environ; *entry; ++entry) {
            std::string text = *entry;
            auto equals = text.find('=');
            if (equals != std::string::npos) merged[text.substr(0, equals)] = text.substr(equals + 1);
        }
        for (const auto& [name, value] : environment) value.empty() ? (void)merged.erase(name) : (void)(merged[name] = value);
        std::vector<std::string> envText;
        for (const auto& [name, value] : merged) envText.push_back(name + "=" + value);
        std::vector<char*> args, envp;
        for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
        for (const auto& e : envText) envp.push_back(const_cast<char*>(e.c_str()));
        args.push_back(nullptr);
        envp.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], 0);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        if (::posix_spawn(&pid_, args[0], &actions, nullptr, args.data(), envp.data()) != 0) pid_ = -1;
        posix_spawn_file_actions_destroy(&actions);
        ::close(in[0]);
        ::close(out[1]);
        input_ = in[1];
        output_ = out[0];
    }
    ~Child() {
        if (pid_ > 0 && !status_) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
        if (input_ >= 0) ::close(input_);
        if (output_ >= 0) ::close(output_);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool started() const { return pid_ > 0; }
    int pid() const { return pid_; }
    void send(const std::string& line) {
        std::string text = line + "\n";
        [[maybe_unused]] auto written = ::write(input_, text.data(), text.size());
    }
    // The next whole line of output, or none when the time is up or the output ended.
    std::optional<std::string> readLine(std::chrono::milliseconds limit = 20s) {
        auto deadline = Clock::now() + limit;
        while (true) {
            if (auto newline = buffered_.find('\n'); newline != std::string::npos) {
                std::string line = buffered_.substr(0, newline);
                buffered_.erase(0, newline + 1);
                transcript_ += line + "\n";
                return line;
            }
            auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
            if (left <= 0) return std::nullopt;
            pollfd reader{output_, POLLIN, 0};
            if (::poll(&reader, 1, int(left)) <= 0) continue;
            char chunk[4096];
            auto count = ::read(output_, chunk, sizeof chunk);
            if (count <= 0) return std::nullopt;
            buffered_.append(chunk, size_t(count));
        }
    }
    // Reads lines until one satisfies the test; false when none came in time.
    bool readUntil(const std::function<bool(const std::string&)>& test, std::chrono::milliseconds limit = 20s) {
        auto deadline = Clock::now() + limit;
        while (auto line = readLine(std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now())))
            if (test(*line)) return true;
        return false;
    }
    bool readUntilLine(const std::string& expected, std::chrono::milliseconds limit = 20s) {
        return readUntil([&](const std::string& line) { return line == expected; }, limit);
    }
    // The exit status (128 + signal for a signal), or none while it still runs after the limit.
    std::optional<int> wait(std::chrono::milliseconds limit = 30s) {
        waitFor([&] {
            int status = 0;
            if (::waitpid(pid_, &status, WNOHANG) != pid_) return false;
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return true;
        }, limit);
        return status_;
    }
    // Everything read so far, then the rest of the output (after the process ended).
    std::string transcript() {
        while (readLine(2s)) {}
        return transcript_ + buffered_;
    }

private:
    pid_t pid_ = -1;
    int input_ = -1, output_ = -1;
    std::string buffered_, transcript_;
    std::optional<int> status_;
};

// Runs a command to its end and returns its output (empty on failure).
inline std::string runCommand(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment) {
    Child child(argv, environment);
    if (!child.started()) return {};
    std::string output = child.transcript();
    child.wait(10s);
    return output;
}

// A private X server on a display it picks itself (-displayfd).
class Xvfb {
public:
    static constexpr int width = 1600, height = 1000;

    explicit Xvfb(const std::string& program) {
        int ready[2];
        if (::pipe(ready) != 0) return;
        std::vector<std::string> argv{program, "-displayfd", std::to_string(ready[1]), "-screen", "0",
                                      std::to_string(width) + "x" + std::to_string(height) + "x24", "-nolisten", "tcp"};
        std::vector<char*> args;
        for (auto& a : argv) args.push_back(a.data());
        args.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addclose(&actions, ready[0]);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        if (::posix_spawn(&pid_, args[0], &actions, nullptr, args.data(), environ) != 0) pid_ = -1;
        posix_spawn_file_actions_destroy(&actions);
        ::close(ready[1]);
        std::string number;
        pollfd reader{ready[0], POLLIN, 0};
        char c;
        while (pid_ > 0 && ::poll(&reader, 1, 20000) > 0 && ::read(ready[0], &c, 1) == 1 && c != '\n') number += c;
        ::close(ready[0]);
        if (!number.empty()) display_ = ":" + number;
    }
    ~Xvfb() {
        if (pid_ > 0) {
            ::kill(pid_, SIGTERM);
            ::waitpid(pid_, nullptr, 0);
        }
    }
    // ":N", or empty when the server did not come up.
    const std::string& display() const { return display_; }

private:
    pid_t pid_ = -1;
    std::string display_;
};

// A connection of the test's own to the X server: window pixels and the
// request to close a window that a window manager would send.
class XConnection {
public:
    explicit XConnection(const std::string& display) : display_(XOpenDisplay(display.c_str())) {
        // A window that went away is a failed capture, not the end of the tests.
        XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    }
    ~XConnection() {
        if (display_) XCloseDisplay(display_);
    }
    bool isOpen() const { return display_ != nullptr; }

    // The window's pixels as opaque RGBA; none when it cannot be read.
    std::optional<jtk::imaging::Image> capture(unsigned long window) {
        XWindowAttributes attributes;
        if (!XGetWindowAttributes(display_, window, &attributes)) return std::nullopt;
        XImage* image = XGetImage(display_, window, 0, 0, attributes.width, attributes.height, AllPlanes, ZPixmap);
        if (!image) return std::nullopt;
        jtk::imaging::Image result(attributes.width, attributes.height);
        auto channel = [](unsigned long pixel, unsigned long mask) {
            int shift = __builtin_ctzl(mask);
            return uint8_t((pixel & mask) >> shift);
        };
        for (int y = 0; y < attributes.height; ++y)
            for (int x = 0; x < attributes.width; ++x) {
                unsigned long pixel = XGetPixel(image, x, y);
                uint8_t* out = result.pixel(x, y);
                out[0] = channel(pixel, image->red_mask);
                out[1] = channel(pixel, image->green_mask);
                out[2] = channel(pixel, image->blue_mask);
                out[3] = 255;
            }
        XDestroyImage(image);
        return result;
    }

    // Gives a keysym a key of its own on a free key code, so that typing it
    // needs no short-lived remapping that a client may look up too late.
    bool bindKeysym(KeySym symbol) {
        int first = 0, last = 0, perCode = 0;
        XDisplayKeycodes(display_, &first, &last);
        KeySym* map = XGetKeyboardMapping(display_, KeyCode(first), last - first + 1, &perCode);
        if (!map) return false;
        int free = 0;
        for (int code = last; code >= first && !free; --code) {
            bool empty = true;
            for (int i = 0; i < perCode; ++i) empty = empty && map[(code - first) * perCode + i] == NoSymbol;
            if (empty) free = code;
            for (int i = 0; i < perCode; ++i)
                if (map[(code - first) * perCode + i] == symbol) free = -1;  // already has a key
        }
        XFree(map);
        if (free > 0) XChangeKeyboardMapping(display_, free, 1, &symbol, 1);
        XSync(display_, False);
        return free != 0;
    }

    // WM_DELETE_WINDOW, as a window manager asks a window to close.
    void askToClose(unsigned long window) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = XInternAtom(display_, "WM_PROTOCOLS", False);
        event.xclient.format = 32;
        event.xclient.data.l[0] = long(XInternAtom(display_, "WM_DELETE_WINDOW", False));
        event.xclient.data.l[1] = CurrentTime;
        XSendEvent(display_, window, False, NoEventMask, &event);
        XFlush(display_);
    }

private:
    Display* display_;
};

}  // namespace displaytest
