#include "JTK/desktop/Alert.h"

#include <algorithm>
#include <cmath>

#include "JTK/desktop/RunLoop.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Screen.h"

namespace jtk::desktop {

using platform::Rect;

namespace {

constexpr double alertWidth = 420;
constexpr double margin = 20;
constexpr double buttonHeight = 32;
constexpr double buttonSpacing = 12;
constexpr double lineHeight = 17;

// The alerts running now, innermost last (main thread only).
std::vector<Alert*>& runningAlerts() {
    static std::vector<Alert*> alerts;
    return alerts;
}

// Lines a text takes in the alert's width, at an average glyph width.
double textHeight(const std::string& text, double glyphWidth) {
    double perLine = std::max(1.0, std::floor((alertWidth - 2 * margin) / glyphWidth));
    double lines = 0;
    size_t start = 0;
    while (true) {
        size_t end = text.find('\n', start);
        size_t length = (end == std::string::npos ? text.size() : end) - start;
        lines += std::max(1.0, std::ceil(static_cast<double>(length) / perLine));
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return lines * lineHeight;
}

double buttonWidth(const std::string& title) { return std::max(82.0, 7.0 * static_cast<double>(title.size()) + 28); }

}  // namespace

Alert::Alert() = default;

Alert::~Alert() {
    if (window_) window_->close();
}

void Alert::addButtonWithTitle(const std::string& title) {
    int index = static_cast<int>(buttons_.size());
    auto button = std::make_shared<Button>(Rect{0, 0, buttonWidth(title), buttonHeight}, title);
    if (index == 0)
        button->setKeyEquivalent("\r");
    else if (title == "Cancel")
        button->setKeyEquivalent("\x1b");
    // The action ends the modal loop; it outlives neither the alert's answer nor the button.
    button->setAction([answer = std::weak_ptr<Answer>(answer_), index](Button&) {
        auto shared = answer.lock();
        if (!shared || shared->index >= 0) return;
        shared->index = index;
        RunLoop::main().wakeUp();
    });
    buttons_.push_back(std::move(button));
}

void Alert::buildWindow() {
    double messageHeight = textHeight(messageText_, 8);
    double informativeHeight = informativeText_.empty() ? 0 : textHeight(informativeText_, 7) + 8;
    double height = margin + buttonHeight + margin + informativeHeight + messageHeight + margin;

    auto screens = platform::screens();
    Rect screen = screens.empty() ? Rect{0, 0, 1440, 900} : screens.front().frame;
    Rect contentRect{screen.midX() - alertWidth / 2, screen.minY() + screen.height() * 2 / 3 - height / 2, alertWidth,
                     height};
    window_ = Window::make(contentRect, std::string{});
    auto content = window_->desktopContentView();

    double top = height - margin;
    auto message = std::make_shared<Label>(Rect{margin, top - messageHeight, alertWidth - 2 * margin, messageHeight},
                                           messageText_);
    message->setFont(Font::boldSystem());
    content->addSubview(message);
    if (!informativeText_.empty()) {
        double informativeTop = top - messageHeight - 8;
        auto informative = std::make_shared<Label>(
            Rect{margin, informativeTop - (informativeHeight - 8), alertWidth - 2 * margin, informativeHeight - 8},
            informativeText_);
        informative->setFont(Font::system(12));
        content->addSubview(informative);
    }
    double right = alertWidth - margin;
    for (const auto& button : buttons_) {
        double width = button->frame().width();
        button->setFrame({right - width, margin, width, buttonHeight});
        content->addSubview(button);
        right -= width + buttonSpacing;
    }
}

int Alert::runModal() {
    if (platform::isMainThread()) return runModalOnMainThread();
    int result = 0;
    platform::dispatchSyncMain([&] { result = runModalOnMainThread(); });
    return result;
}

int Alert::runModalOnMainThread() {
    if (buttons_.empty()) addButtonWithTitle("OK");
    answer_->index = -1;
    buildWindow();
    window_->makeKeyAndOrderFront();
    auto& alerts = runningAlerts();
    alerts.push_back(this);

    // Only a button ends the alert: a stop() meant for an outer level does not.
    auto answer = answer_;
    while (answer->index < 0) RunLoop::main().runMode(RunLoopMode::modalPanel, std::nullopt, [&] { return answer->index >= 0; });

    alerts.erase(std::find(alerts.begin(), alerts.end(), this));
    auto window = std::move(window_);
    window->close();
    // The buttons are kept for another run; the closed window lets them go.
    for (const auto& button : buttons_) button->removeFromSuperview();
    return firstButtonReturn + answer->index;
}

Alert* Alert::current() {
    auto& alerts = runningAlerts();
    return alerts.empty() ? nullptr : alerts.back();
}

bool Alert::pressButton(int index) {
    if (index < 0 || index >= static_cast<int>(buttons_.size())) return false;
    buttons_[static_cast<size_t>(index)]->performClick();
    return true;
}

}  // namespace jtk::desktop

namespace jtk::platform {

std::unique_ptr<Alert> makeAlert() { return std::make_unique<desktop::Alert>(); }

}  // namespace jtk::platform
