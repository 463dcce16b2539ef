// What the tests under a real X server need: a child process with pipes and
// the pixels of a window read back from the X server. Waits poll their
// condition up to a generous limit; nothing relies on a fixed sleep.
#pragma once

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
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
inline bool waitFor(const std::function<bool()>& condition, Clock::duration limit = 20s) {
    for (auto deadline = Clock::now() + limit; !condition(); std::this_thread::sleep_for(20ms))
        if (Clock::now() > deadline) return false;
    return true;
}

// A child process (found on PATH, with the test's environment) whose standard
// input and output are pipes. Killed when it goes out of scope.
class Child {
public:
    explicit Child(std::vector<std::string> argv) {
        int in[2], out[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) return;
        std::vector<char*> args;
        for (auto& argument : argv) args.push_back(argument.data());
        args.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], 0);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        if (::posix_spawnp(&pid_, args[0], &actions, nullptr, args.data(), environ) != 0) pid_ = -1;
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
        ::close(input_);
        ::close(output_);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    void send(const std::string& line) {
        std::string text = line + "\n";
        [[maybe_unused]] auto written = ::write(input_, text.data(), text.size());
    }
    // The next line of output; none when the time is up or the output ended.
    std::optional<std::string> readLine(Clock::duration limit = 20s) {
        for (auto deadline = Clock::now() + limit;;) {
            if (auto newline = buffered_.find('\n'); newline != std::string::npos) {
                std::string line = buffered_.substr(0, newline);
                buffered_.erase(0, newline + 1);
                transcript_ += line + "\n";
                return line;
            }
            auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
            pollfd reader{output_, POLLIN, 0};
            if (left <= 0 || ::poll(&reader, 1, int(left)) <= 0) return std::nullopt;
            char chunk[4096];
            auto count = ::read(output_, chunk, sizeof chunk);
            if (count <= 0) return std::nullopt;
            buffered_.append(chunk, size_t(count));
        }
    }
    // Reads lines until one passes the test; false when none came in time.
    bool readUntil(const std::function<bool(const std::string&)>& test, Clock::duration limit = 20s) {
        auto deadline = Clock::now() + limit;
        while (auto line = readLine(deadline - Clock::now()))
            if (test(*line)) return true;
        return false;
    }
    bool readUntilLine(const std::string& expected, Clock::duration limit = 20s) {
        return readUntil([&](const std::string& line) { return line == expected; }, limit);
    }
    // The exit status (128 + the signal), or none while it still runs after the limit.
    std::optional<int> wait(Clock::duration limit = 30s) {
        waitFor([&] {
            int status = 0;
            if (::waitpid(pid_, &status, WNOHANG) != pid_) return false;
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return true;
        }, limit);
        return status_;
    }
    // The output read so far and what comes within a second more.
    std::string transcript() {
        while (readLine(1s)) {}
        return transcript_ + buffered_;
    }

private:
    pid_t pid_ = -1;
    int input_ = -1, output_ = -1;
    std::string buffered_, transcript_;
    std::optional<int> status_;
};

// The test's own connection to the X server.
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
        XWindowAttributes size;
        XImage* image = XGetWindowAttributes(display_, window, &size)
                            ? XGetImage(display_, window, 0, 0, size.width, size.height, AllPlanes, ZPixmap)
                            : nullptr;
        if (!image) return std::nullopt;
        jtk::imaging::Image result(size.width, size.height);
        auto channel = [](unsigned long pixel, unsigned long mask) { return uint8_t((pixel & mask) >> __builtin_ctzl(mask)); };
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
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

    // Puts the keysym on a free key code, so that typing it needs no
    // short-lived remapping that a client may look up too late.
    void bindKeysymToFreeKey(KeySym symbol) {
        int first = 0, last = 0, perCode = 0;
        XDisplayKeycodes(display_, &first, &last);
        KeySym* map = XGetKeyboardMapping(display_, KeyCode(first), last - first + 1, &perCode);
        int code = last;
        while (code >= first && std::any_of(map + (code - first) * perCode, map + (code - first + 1) * perCode,
                                            [](KeySym s) { return s != NoSymbol; }))
            --code;
        XFree(map);
        if (code >= first) XChangeKeyboardMapping(display_, code, 1, &symbol, 1);
        XSync(display_, False);
    }

    // WM_DELETE_WINDOW, as a window manager asks a window to close.
    void askToClose(unsigned long window) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = XInternAtom(display_, "WM_PROTOCOLS", False);
        event.xclient.format = 32;
        event.xclient.data.l[0] = long(XInternAtom(display_, "WM_DELETE_WINDOW", False));
        XSendEvent(display_, window, False, NoEventMask, &event);
        XFlush(display_);
    }

private:
    Display* display_;
};

}  // namespace displaytest
