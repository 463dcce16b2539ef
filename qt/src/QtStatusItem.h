// Status items over Qt. A headless Qt has no system tray, and a person's
// desktop may have none either, so each item is a small window of the
// backend's own: a frameless, always-on-top button that never takes the
// keyboard focus, at the top right of the main screen, items laid out right
// to left in the order made. The button is the window's content view, of
// class StatusBarButton, so the window is listed among the application's
// windows as any other. Main thread only.
#pragma once

#include <QPushButton>
#include <functional>
#include <memory>

#include "JTK/platform/StatusBar.h"

namespace jtk::qt {

class StatusBarButton : public QPushButton {
    Q_OBJECT

public:
    StatusBarButton();
};

class QtStatusItem : public platform::StatusItem {
public:
    explicit QtStatusItem(double length);
    ~QtStatusItem() override;
    std::string title() const override;
    void setTitle(const std::string& title) override;
    void setAction(std::function<void()> action) override;
    std::shared_ptr<platform::View> button() const override;

    double width() const;
    StatusBarButton* widget() const { return button_; }

private:
    double length_;
    StatusBarButton* button_;  // a window of its own, deleted with the item
    std::function<void()> action_;
};

}  // namespace jtk::qt
