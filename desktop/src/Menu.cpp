#include "JTK/desktop/Menu.h"

#include <algorithm>

#include "JTK/desktop/EventRouting.h"
#include "JTK/desktop/KeyboardLayout.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/WindowServer.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"

namespace jtk::desktop {

// The state of the one tracking loop that can run at a time (main thread only).
struct Menu::Tracking {
    std::shared_ptr<Menu> root;
    // The root and the submenus opened from it, outermost first; kept alive
    // while they are on screen.
    std::vector<std::shared_ptr<Menu>> open;
    std::shared_ptr<MenuItem> highlighted;
    std::shared_ptr<MenuItem> chosen;
    // The press that opened the menu is still down: its release (without a
    // drag) leaves the menu open, as a click on a pop-up button does.
    bool awaitingOpeningRelease = false;
    bool dragged = false;
    bool ended = false;
    // A menu-bar menu: the pointer on another title opens that one instead.
    bool fromMenuBar = false;
    std::optional<BarSwitch> switchTo;

    bool contains(const Menu* menu) const {
        return std::any_of(open.begin(), open.end(), [&](const auto& m) { return m.get() == menu; });
    }
};

namespace {

struct Hit {
    std::shared_ptr<Menu> menu;
    int row = -1;
};

}  // namespace

Menu::Tracking* Menu::currentTracking = nullptr;

Menu::Menu(std::string title) : title_(std::move(title)) {}

std::shared_ptr<Menu> Menu::make(std::string title) { return std::make_shared<Menu>(std::move(title)); }

std::vector<std::shared_ptr<platform::MenuItem>> Menu::itemArray() const {
    return {items_.begin(), items_.end()};
}

std::shared_ptr<MenuItem> Menu::itemAtIndex(int index) const {
    if (index < 0 || index >= numberOfItems()) return nullptr;
    return items_[static_cast<size_t>(index)];
}

std::shared_ptr<MenuItem> Menu::itemWithTitle(const std::string& title) const { return itemAtIndex(indexOfItemWithTitle(title)); }

int Menu::indexOfItem(const std::shared_ptr<platform::MenuItem>& item) const {
    for (size_t i = 0; i < items_.size(); ++i)
        if (items_[i] == item) return static_cast<int>(i);
    return -1;
}

int Menu::indexOfItemWithTitle(const std::string& title) const {
    for (size_t i = 0; i < items_.size(); ++i)
        if (items_[i]->title() == title) return static_cast<int>(i);
    return -1;
}

void Menu::adopt(const std::shared_ptr<MenuItem>& item) {
    if (auto previous = item->menu_.lock()) previous->removeItem(item);
    item->menu_ = std::static_pointer_cast<Menu>(weak_from_this().lock());
}

void Menu::addItem(const std::shared_ptr<MenuItem>& item) { insertItem(item, numberOfItems()); }

void Menu::insertItem(const std::shared_ptr<MenuItem>& item, int index) {
    if (!item) return;
    adopt(item);
    index = std::clamp(index, 0, numberOfItems());
    items_.insert(items_.begin() + index, item);
}

void Menu::removeItem(const std::shared_ptr<MenuItem>& item) { removeItemAtIndex(indexOfItem(item)); }

void Menu::removeItemAtIndex(int index) {
    auto item = itemAtIndex(index);
    if (!item) return;
    item->menu_.reset();
    items_.erase(items_.begin() + index);
}

void Menu::removeAllItems() {
    for (auto& item : items_) item->menu_.reset();
    items_.clear();
}

void Menu::performActionForItemAtIndex(int index) {
    if (!platform::isMainThread()) {
        platform::dispatchSyncMain([&] { performActionForItemAtIndex(index); });
        return;
    }
    auto item = itemAtIndex(index);
    if (!item || !item->isEnabled()) return;
    // The action may remove the item or drop the menu: keep both alive.
    auto protector = shared_from_this();
    if (auto action = item->action()) action(*item);
    platform::defaultNotificationCenter().post(platform::menuDidSendActionNotification, protector,
                                               platform::ValueDictionary{{"MenuItem", item}});
}

bool Menu::performKeyEquivalent(const platform::Event& keyDown) {
    std::string unshifted = keyDown.unicodeText.empty() ? charactersForKey(keyDown.keyCode, 0) : keyDown.unicodeText;
    auto items = items_;  // an action may change the menu
    for (size_t i = 0; i < items.size(); ++i) {
        auto& item = items[i];
        if (auto submenu = item->desktopSubmenu()) {
            if (submenu->performKeyEquivalent(keyDown)) return true;
        } else if (item->matchesKeyEquivalent(unshifted, keyDown.flags)) {
            performActionForItemAtIndex(indexOfItem(item));
            return true;
        }
    }
    return false;
}

double Menu::width() const {
    // Room for the mark column, the title at about 8 points a character, and
    // the key equivalent (modifier signs and key) or the submenu arrow.
    double widest = 120;
    for (auto& item : items_) {
        double row = 8.0 * static_cast<double>(item->title().size()) + 44;
        if (item->hasSubmenu()) row += 16;
        else if (!item->keyEquivalent().empty()) row += 34 + 10.0 * static_cast<double>(item->keyEquivalent().size() + 1);
        widest = std::max(widest, row);
    }
    return widest;
}

void Menu::openAt(platform::Point topLeft) {
    double height = rowHeight * numberOfItems();
    frame_ = platform::Rect{topLeft.x, topLeft.y - height, width(), height};
}

int Menu::rowAt(platform::Point p) const {
    if (frame_.isEmpty() || !platform::pointInRect(p, frame_)) return -1;
    int row = static_cast<int>((frame_.maxY() - p.y) / rowHeight);
    return row < numberOfItems() ? row : -1;
}

std::shared_ptr<MenuItem> Menu::popUp(platform::Point topLeftOnScreen, const std::shared_ptr<platform::View>& view) {
    if (!platform::isMainThread()) {
        std::shared_ptr<MenuItem> chosen;
        platform::dispatchSyncMain([&] { chosen = popUp(topLeftOnScreen, view); });
        return chosen;
    }
    if (currentTracking) return nullptr;
    Tracking tracking;
    tracking.awaitingOpeningRelease = isLeftButtonDownInApplication();
    return track(topLeftOnScreen, view, tracking);
}

std::optional<Menu::BarSwitch> Menu::trackFromMenuBar(platform::Point topLeftOnScreen, BarOpening how) {
    if (!platform::isMainThread() || currentTracking) return std::nullopt;
    Tracking tracking;
    tracking.fromMenuBar = true;
    bool buttonDown = isLeftButtonDownInApplication();
    // A press on the title: its release there leaves the menu open. Dragged
    // onto the title from another one: a release on a row chooses it.
    tracking.awaitingOpeningRelease = buttonDown && how == BarOpening::byPress;
    tracking.dragged = buttonDown && how == BarOpening::byDrag;
    track(topLeftOnScreen, {}, tracking);
    return tracking.switchTo;
}

std::shared_ptr<MenuItem> Menu::track(platform::Point topLeftOnScreen, const std::shared_ptr<platform::View>& view,
                                      Tracking& tracking) {
    auto self = sharedMenu();
    tracking.root = self;
    tracking.open = {self};
    popUpView_ = view;
    openAt(topLeftOnScreen);
    currentTracking = &tracking;

    auto& center = platform::defaultNotificationCenter();
    center.post(platform::menuDidBeginTrackingNotification, self);
    RunLoop::main().runMode(RunLoopMode::eventTracking, std::nullopt, [&] { return tracking.ended; });

    currentTracking = nullptr;
    for (auto& menu : tracking.open) menu->close();
    center.post(menuDidEndTrackingNotification, self);
    // A chosen item is performed by the menu it belongs to, after the menu closed.
    if (auto chosen = tracking.chosen)
        if (auto owner = chosen->desktopMenu()) owner->performActionForItemAtIndex(owner->indexOfItem(chosen));
    return tracking.chosen;
}

void Menu::cancelTracking() {
    auto end = [weak = weak_from_this()] {
        auto self = weak.lock();
        if (!self || !currentTracking || !currentTracking->contains(static_cast<Menu*>(self.get()))) return;
        currentTracking->ended = true;
        RunLoop::main().wakeUp();
    };
    if (platform::isMainThread())
        end();
    else
        platform::dispatchAsyncMain(end);
}

bool Menu::isTracking() const { return platform::isMainThread() && currentTracking && currentTracking->contains(this); }

std::shared_ptr<Menu> Menu::trackingMenu() {
    if (!platform::isMainThread() || !currentTracking || currentTracking->ended) return nullptr;
    return currentTracking->root;
}

std::vector<std::shared_ptr<Menu>> Menu::openMenus() {
    if (!platform::isMainThread() || !currentTracking || currentTracking->ended) return {};
    return currentTracking->open;
}

int Menu::highlightedRow() const {
    if (!isTracking() || !currentTracking->highlighted) return -1;
    return indexOfItem(currentTracking->highlighted);
}

bool Menu::handleTrackingEvent(const platform::Event& event) {
    if (!platform::isMainThread() || !currentTracking || currentTracking->ended) return false;
    Tracking& t = *currentTracking;
    using platform::EventType;
    auto screenPoint = WindowServer::screenPointFromEventPoint(event.location);
    auto hitTest = [&] {
        for (auto it = t.open.rbegin(); it != t.open.rend(); ++it)
            if (int row = (*it)->rowAt(screenPoint); row >= 0) return Hit{*it, row};
        return Hit{};
    };
    // Highlights a row; a row with a submenu opens it to the right.
    auto highlight = [&](const Hit& hit) {
        auto level = std::find(t.open.begin(), t.open.end(), hit.menu);
        for (auto it = level + 1; it != t.open.end(); ++it) (*it)->close();
        t.open.erase(level + 1, t.open.end());
        t.highlighted = hit.menu->itemAtIndex(hit.row);
        auto submenu = t.highlighted->desktopSubmenu();
        if (submenu && submenu->numberOfItems() > 0) {
            submenu->openAt({hit.menu->frame_.maxX(), hit.menu->frame_.maxY() - rowHeight * hit.row});
            t.open.push_back(submenu);
        }
    };
    auto choose = [&](const std::shared_ptr<MenuItem>& item) {
        if (!item || !item->isEnabled() || item->hasSubmenu()) return;
        t.chosen = item;
        t.ended = true;
    };
    // For a menu-bar menu: the bar's title under the pointer, when it has a menu.
    auto barTitle = [&]() -> std::optional<MenuBarTitle> {
        if (!t.fromMenuBar) return std::nullopt;
        return menuBarTitleAt(screenPoint);
    };
    auto isOwnTitle = [&](const MenuBarTitle& title) { return title.item->desktopSubmenu() == t.root; };
    // The pointer went on to another title: its menu opens once this one has closed.
    auto switchTo = [&](const MenuBarTitle& title, BarOpening how) {
        t.switchTo = BarSwitch{title, how};
        t.ended = true;
    };

    switch (event.type) {
        case EventType::leftMouseDown:
        case EventType::rightMouseDown: {
            t.awaitingOpeningRelease = false;
            auto hit = hitTest();
            auto title = hit.menu ? std::nullopt : barTitle();
            if (title && !isOwnTitle(*title) && event.type == EventType::leftMouseDown)
                switchTo(*title, BarOpening::byPress);
            else if (!hit.menu)
                t.ended = true;  // a click outside (or on the menu's own title) closes the menu and is used up
            else
                highlight(hit);
            break;
        }
        case EventType::leftMouseDragged:
        case EventType::mouseMoved: {
            if (event.type == EventType::leftMouseDragged) t.dragged = true;
            if (auto hit = hitTest(); hit.menu)
                highlight(hit);
            else if (auto title = barTitle(); title && !isOwnTitle(*title))
                switchTo(*title, event.type == EventType::leftMouseDragged ? BarOpening::byDrag : BarOpening::byMove);
            break;
        }
        case EventType::leftMouseUp:
        case EventType::rightMouseUp: {
            bool openingRelease = t.awaitingOpeningRelease && !t.dragged;
            t.awaitingOpeningRelease = false;
            if (openingRelease) break;
            if (auto hit = hitTest(); hit.menu)
                choose(hit.menu->itemAtIndex(hit.row));
            else if (auto title = barTitle(); title && isOwnTitle(*title))
                break;  // back on the menu's own title: it stays open for a click on a row
            else if (t.dragged)
                t.ended = true;  // press, drag off the menu, release: nothing chosen
            break;
        }
        case EventType::keyDown:
            if (event.keyCode == keyCodes::escape)
                t.ended = true;
            else if (event.keyCode == keyCodes::returnKey)
                choose(t.highlighted);
            break;
        default:
            break;
    }
    return true;
}

}  // namespace jtk::desktop
