// Modal alerts.
#pragma once

#include <memory>
#include <string>

namespace jtk::platform {

class Alert {
public:
    virtual ~Alert() = default;
    virtual void setMessageText(const std::string& text) = 0;
    virtual void setInformativeText(const std::string& text) = 0;
    virtual void addButtonWithTitle(const std::string& title) = 0;
    // Runs a modal loop on the main thread until a button is pressed; returns
    // 1000 for the first button, 1001 for the second, and so on.
    virtual int runModal() = 0;
};

std::unique_ptr<Alert> makeAlert();

}  // namespace jtk::platform
