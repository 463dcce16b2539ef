// One thing a person sees inside a widget (a tab, a menu-bar title, an item,
// a header section) as a view of its own: a subview of its owner widget with
// the frame Qt gives it, its text as title and value, no subviews, and state
// read by name. Each kind says what it stands for; this class turns that
// into a view. Main thread only.
#pragma once

#include <QPointer>
#include <QRect>
#include <QString>
#include <QWidget>
#include <optional>

#include "JTK/platform/View.h"

namespace jtk::qt {

class QtPart : public platform::View {
public:
    explicit QtPart(QWidget* owner) : owner_(owner) {}
    QWidget* owner() const { return owner_.data(); }

    // Whether what the part stands for still exists in its owner.
    virtual bool exists() const = 0;
    // Read only while the part exists.
    virtual QString text() const = 0;
    virtual QRect rectInOwner() const = 0;  // Qt's coordinates of the owner, y down
    virtual bool enabled() const = 0;
    virtual bool selected() const = 0;
    virtual std::optional<bool> checked() const { return std::nullopt; }
    virtual QString toolTipText() const { return {}; }
    // Scrolls the part into sight within its owner; false when it cannot.
    virtual bool scrollIntoView() { return false; }

    bool respondsToSelector(const std::string& selector) const override;
    platform::Value performSelector(const std::string& selector, const platform::Value& argument = {}) override;

    std::shared_ptr<platform::View> superview() const override;
    std::vector<std::shared_ptr<platform::View>> subviews() const override { return {}; }
    std::shared_ptr<platform::Window> window() const override;
    bool isHidden() const override { return !exists(); }
    platform::Rect frame() const override;
    platform::Rect bounds() const override;
    platform::Rect visibleRect() const override;
    platform::Rect convertRectToWindow(const platform::Rect& rect) const override;
    platform::Value accessibilityValue() const override;

private:
    QPointer<QWidget> owner_;
};

}  // namespace jtk::qt
