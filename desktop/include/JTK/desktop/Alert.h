// A modal alert: a real window in the application's window list, with a
// message, an informative text and buttons laid out from the bottom right
// (the first button rightmost; it answers Return, a "Cancel" button Escape).
// runModal() shows it as the key window and runs the main run loop in the
// modal-panel mode, where the main queue and common-mode timers still run,
// until one of its buttons is pressed; then the window closes. Main thread
// only; runModal() called elsewhere hops to the main thread and waits.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/platform/Alert.h"

namespace jtk::desktop {

class Alert : public platform::Alert {
public:
    static constexpr int firstButtonReturn = 1000;

    Alert();
    ~Alert() override;

    void setMessageText(const std::string& text) override { messageText_ = text; }
    const std::string& messageText() const { return messageText_; }
    void setInformativeText(const std::string& text) override { informativeText_ = text; }
    void addButtonWithTitle(const std::string& title) override;
    const std::vector<std::shared_ptr<Button>>& buttons() const { return buttons_; }

    // Returns firstButtonReturn + the index of the pressed button. An alert
    // without buttons gets an "OK" button.
    int runModal() override;

    // The alert whose modal loop runs now (the innermost one), or null.
    static Alert* current();
    // Presses a button as a click would (a disabled button does nothing).
    // False when there is no button at that index.
    bool pressButton(int index);
    // The alert's window while it runs, else null.
    std::shared_ptr<Window> window() const { return window_; }

private:
    // What the buttons' actions report to, alive as long as a button is.
    struct Answer {
        int index = -1;
    };

    void buildWindow();
    int runModalOnMainThread();

    std::string messageText_;
    std::string informativeText_;
    std::vector<std::shared_ptr<Button>> buttons_;
    std::shared_ptr<Answer> answer_ = std::make_shared<Answer>();
    std::shared_ptr<Window> window_;
};

}  // namespace jtk::desktop
