// Menus opened by clicks: the capture of the menu that begins tracking, the
// wait for the menu a click opens, and choosing an item by title.
//
// A captured menu is chosen from once: the choice closes it, and so does the
// next click, which captures afresh (or nothing). The chosen command runs
// after the choice's main-thread step has returned, so that a command that
// opens a modal dialog leaves the test free to answer it.
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "JTK/JTKElement.h"
#include "run/JTKMainThread.h"
#include "run/JTKProcessEnd.h"
#include "JTK/JTKTestSuite.h"
#include "input/JTKEventPosting.h"
#include "input/JTKMenuSearch.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"

namespace jtk {

namespace {

// The class property currentOpenMenu: written on the main thread by the
// capture, read on the test queue, so it is guarded.
std::mutex currentOpenMenuMutex;
std::weak_ptr<platform::Menu> currentOpenMenuStorage;

std::shared_ptr<platform::Menu> menuOf(const platform::Notification& notification) {
    return std::dynamic_pointer_cast<platform::Menu>(notification.object.object());
}

// Waits for a menu to begin tracking; a one-menu holder filled by the
// notification handler on the main thread.
struct MenuWait {
    std::mutex mutex;
    std::condition_variable signalled;
    bool arrived = false;
    std::shared_ptr<platform::Menu> menu;
};

}  // namespace

std::shared_ptr<platform::Menu> JTKElement::currentOpenMenu() {
    std::lock_guard lock(currentOpenMenuMutex);
    return currentOpenMenuStorage.lock();
}

void JTKElement::setCurrentOpenMenu(std::shared_ptr<platform::Menu> menu) {
    std::lock_guard lock(currentOpenMenuMutex);
    currentOpenMenuStorage = menu;
}

void JTKElement::caputureMenuIfOneOpens() {
    // The delayed task ends the observation; the handler also checks the time
    // itself, so a main thread that is late to run that task cannot stretch
    // the capture window.
    auto end = std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                                      std::chrono::duration<double>(JTKPacing::menuCaptureWindow));
    // An earlier capture is over: a menu it saw has closed by this click.
    setCurrentOpenMenu(nullptr);
    auto& center = platform::defaultNotificationCenter();
    uint64_t token = center.addObserver(platform::menuDidBeginTrackingNotification, {},
                                        platform::DeliveryQueue::postingThread,
                                        [end](const platform::Notification& notification) {
                                            if (std::chrono::steady_clock::now() > end) return;
                                            setCurrentOpenMenu(menuOf(notification));
                                        });
    platform::dispatchAfterMain(JTKPacing::menuCaptureWindow,
                                [token] { platform::defaultNotificationCenter().removeObserver(token); });
}

std::shared_ptr<platform::Menu> JTKElement::openMenu(uint64_t flags) {
    // The main thread must stay free to handle the press that opens the menu.
    if (platform::isMainThread()) {
        jtkFatalStop("JTK: openMenu cannot wait for a menu on the main thread (" + elementLookupDescription() + ")",
                     "JTKElement::openMenu");
    }
    auto wait = std::make_shared<MenuWait>();
    auto& center = platform::defaultNotificationCenter();
    uint64_t token = center.addObserver(platform::menuDidBeginTrackingNotification, {},
                                        platform::DeliveryQueue::postingThread,
                                        [wait](const platform::Notification& notification) {
                                            std::lock_guard lock(wait->mutex);
                                            wait->menu = menuOf(notification);
                                            wait->arrived = true;
                                            wait->signalled.notify_all();
                                        });
    click(platform::Point{0, 0}, flags, false, true);
    bool arrived;
    std::shared_ptr<platform::Menu> menu;
    {
        std::unique_lock lock(wait->mutex);
        arrived = wait->signalled.wait_for(lock, std::chrono::duration<double>(JTKPacing::openMenuTimeout),
                                           [&] { return wait->arrived; });
        menu = std::move(wait->menu);
    }
    center.removeObserver(token);
    if (!arrived || !menu) {
        static_assert(JTKPacing::openMenuTimeout == 5.0, "the message names the time-out");
        jtkFatalStop("JTK: no menu opened within 5 seconds after clicking " + elementLookupDescription(),
                     "JTKElement::openMenu");
    }
    return menu;
}

void JTKElement::clickMenuItem(const std::string& title, uint64_t flags) {
    if (JTKEventPosting::handOverToRecorder(this, "clickMenuItem(title:flags:)", {title, JTKEventFlags{flags}},
                                            true)) {
        return;
    }
    auto menu = currentOpenMenu();
    if (!menu) menu = openMenu(flags);
    setCurrentOpenMenu(nullptr);
    std::shared_ptr<platform::Menu> owner;
    int index = -1;
    std::string missing;
    jtkOnMainThread([&] {
        JTKEventPosting::activateApplicationIfNeeded();
        if (auto hit = jtkFindMenuItem(title, *menu)) {
            if ((owner = hit->menu())) index = owner->indexOfItem(hit);
            return;
        }
        missing = jtkMissingMenuItemMessage(title, *menu);
        // The menu is let go on the main thread, never on the test queue.
        menu->cancelTracking();
        menu.reset();
    });
    if (!missing.empty()) jtkFatalStop(missing, "JTKElement::clickMenuItem");
    // The menu closes, then its owner performs the item, as after a person's choice.
    auto choose = [menu = std::move(menu), owner = std::move(owner), index]() mutable {
        menu->cancelTracking();
        if (owner) owner->performActionForItemAtIndex(index);
        owner.reset();
        menu.reset();
    };
    if (platform::isMainThread()) {
        choose();
    } else {
        platform::dispatchAsyncMain(std::move(choose));
        // The main queue keeps its order: this step runs once the command has
        // returned, or inside the loop of the dialog it opened.
        jtkOnMainThread([] {});
    }
    JTKTestSuite::sleepUntilIdle();
}

}  // namespace jtk
