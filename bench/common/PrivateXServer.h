// An X server of the benchmark's own, for a backend that needs one (GTK 4
// runs on X11 here): the given display when DISPLAY names one, otherwise an
// Xvfb started on a display number of its own choosing (-displayfd), so that
// runs side by side never meet, and ended with this object.
#pragma once

#include <string>
#include <sys/types.h>

namespace jtk::bench {

class PrivateXServer {
public:
    PrivateXServer();
    ~PrivateXServer();
    PrivateXServer(const PrivateXServer&) = delete;
    PrivateXServer& operator=(const PrivateXServer&) = delete;

    // ":N", the given DISPLAY, or empty when there is none (why() says why).
    const std::string& display() const { return display_; }
    const std::string& why() const { return why_; }

private:
    pid_t server_ = -1;
    std::string display_;
    std::string why_;
};

}  // namespace jtk::bench
