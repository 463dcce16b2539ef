// A light handle on one view of the application under test. It holds the view
// weakly and caches nothing: every property reads the live view state on the
// main thread. An operation that needs a view that has gone stops the run with
// a message naming the element's lookup description.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "JTK/JTKClass.h"
#include "JTK/JTKInput.h"
#include "JTK/platform/Geometry.h"
#include "JTK/platform/Menu.h"
#include "JTK/platform/View.h"

namespace jtk {

class JTKElement {
public:
    explicit JTKElement(std::shared_ptr<platform::View> view);
    JTKElement(const JTKElement&) = default;
    JTKElement& operator=(const JTKElement&) = default;
    virtual ~JTKElement() = default;

    std::shared_ptr<platform::View> view() const { return view_.lock(); }
    void setView(std::shared_ptr<platform::View> view) { view_ = view; }
    const std::string& elementLookupDescription() const { return elementLookupDescription_; }
    void setElementLookupDescription(std::string text) { elementLookupDescription_ = std::move(text); }

    // Equal when both wrap the same view, or neither has one. Null: no view.
    virtual bool isEqual(const JTKElement* other) const;
    bool operator==(const JTKElement& other) const { return isEqual(&other); }

    virtual std::vector<JTKElement> superElements() const;
    virtual std::optional<JTKElement> superElement() const;
    // The view's hbModelObject when it is an object, else null (the name is the interface's).
    virtual std::shared_ptr<platform::Object> modelOject() const;
    virtual std::string description() const;

    // What the view shows, read live; empty when unknown or when the view has gone.
    std::string name() const;
    std::string value() const;
    std::string title() const;
    std::string typeName() const;
    // The view's frame on screen (points, origin at the bottom left of the main screen).
    platform::Rect frame() const { return frameOnScreen(); }
    std::string debugDescription() const { return description(); }

    // Geometry.
    virtual platform::Rect frameOnScreen() const;
    virtual platform::Rect frameInWindow() const;
    virtual platform::Point frameCenterOnScreen() const;

    // Clicks; each returns the element.
    JTKElement& click();
    JTKElement& click(platform::Point offset);
    JTKElement& click(platform::Point offset, bool doubleClick);
    virtual JTKElement& click(platform::Point offset, uint64_t modifierFlags, bool doubleClick, bool mouseUp);
    // The same click with named arguments: click({.modifierFlags = jtk::shift}).
    // A template only so that a plain click({x, y}) keeps meaning click(offset).
    template <class Options = JTKClickOptions>
    JTKElement& click(const JTKClickOptions& options) {
        return click(options.offset, options.modifierFlags, options.doubleClick, options.mouseUp);
    }

    // Drag and scroll.
    virtual void scrollTo();
    virtual void drag(platform::Point offset);

    // Menus.
    virtual void caputureMenuIfOneOpens();
    virtual std::shared_ptr<platform::Menu> openMenu(uint64_t flags = 0);
    virtual void clickMenuItem(const std::string& title, uint64_t flags = 0);
    static std::shared_ptr<platform::Menu> currentOpenMenu();
    static void setCurrentOpenMenu(std::shared_ptr<platform::Menu> menu);

    // Searches below this element, in view-walk order.
    virtual JTKElement subElement(const std::string& lookup) const;
    virtual JTKElement subElementWithType(const JTKClass& type) const;
    virtual std::vector<JTKElement> subElements(const std::string& lookup) const;
    virtual std::vector<JTKElement> subElementsWithType(std::optional<JTKClass> type) const;

    virtual bool matchesLookup(const std::string& lookup) const;

    // The view, or a stop naming this element when it has gone.
    std::shared_ptr<platform::View> requireView(const char* operation) const;

private:
    friend class JTKSearchPass;
    // For a search that has read the view's name and frame already.
    JTKElement(std::shared_ptr<platform::View> view, std::string lookupDescription)
        : view_(view), elementLookupDescription_(std::move(lookupDescription)) {}

    std::weak_ptr<platform::View> view_;
    std::string elementLookupDescription_;
};

}  // namespace jtk
