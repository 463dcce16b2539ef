#include "recorder/JTKRecorder.h"

#include <cmath>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Menu.h"
#include "JTK/platform/Screen.h"
#include "JTK/platform/Text.h"
#include "JTK/platform/Window.h"
#include "input/JTKKeyboard.h"
#include "recorder/JTKElementReference.h"
#include "recorder/JTKRecorderController.h"
#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"

namespace jtk {

namespace {

using platform::EventType;
constexpr uint16_t tabKeyCode = 48;
constexpr uint16_t returnKeyCode = 36, enterKeyCode = 76;

double secondsSince(JTKRecorder::Clock::time_point time) {
    return std::chrono::duration<double>(JTKRecorder::Clock::now() - time).count();
}

// An event's location on screen: event points count y down from the top of
// the main screen. The event's own place, not the cursor's, which may have
// moved on by the time the event is handled.
platform::Point screenLocation(const platform::Event& event) {
    auto screens = platform::screens();
    double height = screens.empty() ? 0 : screens.front().frame.height();
    return {event.location.x, height - 1 - event.location.y};
}

platform::Point rounded(platform::Point point) { return {std::round(point.x), std::round(point.y)}; }

bool menuHolds(const platform::Menu& menu, const std::shared_ptr<platform::MenuItem>& item, int depth) {
    for (const auto& candidate : menu.itemArray()) {
        if (candidate == item) return true;
        auto submenu = candidate ? candidate->submenu() : nullptr;
        if (submenu && depth < 8 && menuHolds(*submenu, item, depth + 1)) return true;
    }
    return false;
}

// Where a menu-bar command sits: the bar's item (its title) whose menu holds
// it, and whether the menu shows it directly (not in one of its submenus).
struct MenuBarPlace {
    std::shared_ptr<platform::MenuItem> title;
    bool direct = false;
};

std::optional<MenuBarPlace> menuBarPlace(const std::shared_ptr<platform::MenuItem>& item) {
    auto application = platform::sharedApplication();
    auto mainMenu = application ? application->mainMenu() : nullptr;
    if (!mainMenu) return std::nullopt;
    for (const auto& top : mainMenu->itemArray()) {
        auto submenu = top ? top->submenu() : nullptr;
        if (!submenu) continue;
        for (const auto& candidate : submenu->itemArray())
            if (candidate == item) return MenuBarPlace{top, true};
        if (menuHolds(*submenu, item, 0)) return MenuBarPlace{top, false};
    }
    return std::nullopt;
}

// An upper-case key equivalent ("S") is typed with Shift; a key's name ("F5") is no character.
bool impliesShift(const std::string& keyEquivalent) {
    auto characters = jtkCharacters(keyEquivalent);
    return characters.size() == 1 && jtkLowercase(characters.front()) != characters.front();
}

uint64_t shortcutFlags(uint64_t mask) {
    uint64_t flags = 0;
    for (uint64_t bit : {platform::eventFlags::command, platform::eventFlags::alternate, platform::eventFlags::control,
                         platform::eventFlags::shift})
        flags |= mask & bit;
    return flags;
}

}  // namespace

std::shared_ptr<JTKRecorder> JTKRecorder::make(const std::filesystem::path& file) {
    std::string message;
    auto source = JTKSourceFile::open(file, message);
    if (!source) {
        jtkPrintLine(message);
        return nullptr;
    }
    std::shared_ptr<JTKRecorder> recorder(new JTKRecorder(std::move(*source)));
    jtkOnMainThread([&] { recorder->start(); });
    return recorder;
}

JTKRecorder::JTKRecorder(JTKSourceFile file) : file_(std::move(file)), dialect_(file_->dialect()) {}

JTKRecorder::~JTKRecorder() {
    // A recorder dropped without stop() leaves no handler behind (they hold it weakly anyway).
    auto& center = platform::defaultNotificationCenter();
    for (uint64_t token : {menuObserver_, textDidEndEditingObserver_, textDidChangeObserver_})
        if (token) center.removeObserver(token);
    // After stop() nothing is left to remove: the last reference may go on the
    // recording's own queue while the process ends, when the application may
    // already be gone.
    if (mainObserver_)
        if (auto application = platform::sharedApplication()) application->removeMonitor(mainObserver_);
}

void JTKRecorder::start() {
    std::weak_ptr<JTKRecorder> weak = weak_from_this();
    recording_ = true;
    startDate_ = lastMouseDownDate_ = Clock::now();
    menuObserver_ = platform::defaultNotificationCenter().addObserver(
        platform::menuDidSendActionNotification, {}, platform::DeliveryQueue::postingThread,
        [weak](const platform::Notification& notification) {
            if (auto self = weak.lock()) self->menuDidSelect(notification);
        });
    if (auto application = platform::sharedApplication()) {
        mainObserver_ = application->addLocalMonitorForEvents(platform::anyEventMask, [weak](auto event) {
            auto self = weak.lock();
            return self ? self->handleEvent(std::move(event)) : event;
        });
    }
}

void JTKRecorder::backdateStart(double seconds) {
    jtkOnMainThread([&] { startDate_ -= std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds)); });
}

void JTKRecorder::record(const JTKElement* element, const std::string& signature,
                         const std::vector<JTKStringConvertable>& arguments, bool chained) {
    jtkOnMainThread([&] { recordOnMainThread(element, signature, arguments, chained); });
}

void JTKRecorder::recordOnMainThread(const JTKElement* element, const std::string& signature,
                                     const std::vector<JTKStringConvertable>& arguments, bool chained) {
    auto protector = shared_from_this();  // a failed write lets the suite drop this recorder
    if (!file_) return;
    bool returnsElement = jtkSignatureTokens(signature).name == "click";
    if (!element) {
        std::string call = jtkCallText(dialect_, signature, arguments);
        handleWrite(file_->insertStatement(jtkStatement(dialect_, call, std::nullopt, JTKChaining::none), false));
        lastCallReturnsElement_ = false;
        return;
    }
    JTKElementReference named = jtkElementReference(*element, dialect_);
    std::string reference = jtkReferenceText(named, dialect_);
    auto kept = arguments;
    // A click on an element without a name of its own is written against its
    // named ancestor; a C++ replay clicks the ancestor, so the offset is
    // measured from the ancestor's centre (Swift and Objective-C keep the
    // offset from the element's own centre).
    if (dialect_ == JTKDialect::cpp && returnsElement && !kept.empty())
        if (auto* offset = std::get_if<platform::Point>(&kept.front()))
            *offset = {offset->x + named.centreShift.x, offset->y + named.centreShift.y};
    std::string call = jtkCallText(dialect_, signature, kept);
    // With no statement line to continue, the call starts a line of its own.
    chained = chained && file_->hasStatementToContinue();
    JTKChaining chaining = JTKChaining::none;
    if (chained)
        chaining = dialect_ == JTKDialect::cpp && !lastCallReturnsElement_ ? JTKChaining::ontoOtherCall : JTKChaining::ontoElement;
    handleWrite(file_->insertStatement(jtkStatement(dialect_, call, reference, chaining), chained));
    lastCallReturnsElement_ = returnsElement;
}

void JTKRecorder::handleWrite(JTKSourceFile::Write result) {
    if (result != JTKSourceFile::Write::failed) return;
    // The file keeps its last complete version; recording on would only lose more.
    jtkPrintLine(file_->failure());
    endObservations();
    file_.reset();
    if (JTKTestSuite::recorder().get() == this) {
        JTKTestSuite::setRecorder(nullptr);
        JTKRecorderController::shared().setStatusTitle(JTKRecorderController::recordTitle);
    }
}

void JTKRecorder::stop() {
    jtkOnMainThread([&] {
        auto protector = shared_from_this();
        if (file_) {
            auto result = file_->finish();
            if (result == JTKSourceFile::Write::failed) jtkPrintLine(file_->failure());
            file_.reset();
        }
        endObservations();
    });
}

void JTKRecorder::endObservations() {
    recording_ = false;
    removeTextObservers();
    if (menuObserver_) platform::defaultNotificationCenter().removeObserver(menuObserver_);
    menuObserver_ = 0;
    if (mainObserver_)
        if (auto application = platform::sharedApplication()) application->removeMonitor(mainObserver_);
    mainObserver_ = 0;
    lastClickedElement_.reset();
    elementOnMouseUp_.reset();
    dragHandler_.reset();
}

std::shared_ptr<platform::Event> JTKRecorder::handleEvent(std::shared_ptr<platform::Event> event) {
    // Only the suite's own recorder records: anyone else's actions would post real events.
    if (!event || !recording_ || secondsSince(startDate_) < startDelay || JTKTestSuite::recorder().get() != this)
        return event;
    auto protector = shared_from_this();
    if (event->type == EventType::leftMouseDown) lastResponder_.reset();
    if (event->type == EventType::keyDown && event->keyCode == tabKeyCode) {
        if (textIsEditing_) flushTypedText();
        JTKTestSuite::typeKey(tabKeyCode, event->flags);
    }
    // The text as typed, before Return takes effect: a program may clear
    // the field on Return before the editing ends.
    if (event->type == EventType::keyDown && (event->keyCode == returnKeyCode || event->keyCode == enterKeyCode) &&
        textIsEditing_)
        textAtReturn_ = currentTextBuffer_;
    noteResponder();
    if (!recording_) return event;  // a write failed
    // Events come before their effect: until the first change, the text
    // object holds what it held when this editing began.
    if (!textIsEditing_)
        if (auto textObject = observedTextObject_.lock()) editingBaseline_ = platform::textObjectString(*textObject).value_or("");
    if (event->type == EventType::leftMouseDown) mouseDown(*event);
    if (event->type == EventType::leftMouseUp) mouseUp(*event);
    if (lastClickedElement_ && event->type == EventType::leftMouseDragged && !dragHandler_)
        dragHandler_ = DragRecorder{rounded(screenLocation(*event)), *lastClickedElement_};
    return event;
}

void JTKRecorder::noteResponder() {
    auto application = platform::sharedApplication();
    auto keyWindow = application ? application->keyWindow() : nullptr;
    auto responder = keyWindow ? keyWindow->firstResponderObject() : nullptr;
    auto last = lastResponder_.lock();
    if (responder == last) return;
    lastResponder_ = responder;
    if (!responder || !platform::textObjectString(*responder)) return;
    if (textIsEditing_) flushTypedText();
    removeTextObservers();
    observeTextObject(responder);
}

void JTKRecorder::mouseDown(const platform::Event& event) {
    platform::Point location = screenLocation(event);
    auto element = jtkClickTarget(location);
    if (!element) return;
    platform::Point centre = element->frameCenterOnScreen();
    platform::Point offset = rounded({location.x - centre.x, location.y - centre.y});
    bool doubleClick = secondsSince(lastMouseDownDate_) < doubleClickInterval && event.clickState > 1;
    if (elementOnMouseUp_ && *elementOnMouseUp_ == *element && doubleClick && file_)
        handleWrite(file_->removeLastStatement());
    if (!recording_) return;
    lastClickedElement_ = element->click(offset, event.flags, doubleClick, true);
    lastMouseDownDate_ = Clock::now();
}

void JTKRecorder::mouseUp(const platform::Event& event) {
    if (dragHandler_) {
        platform::Point m = rounded(screenLocation(event));
        platform::Point d = dragHandler_->mouseDownLocation;
        if (std::hypot(d.x - m.x, d.y - m.y) > dragThreshold) dragHandler_->element.drag({m.x - d.x, m.y - d.y});
    }
    dragHandler_.reset();
    elementOnMouseUp_ = lastClickedElement_;
    lastClickedElement_.reset();
}

void JTKRecorder::menuDidSelect(const platform::Notification& notification) {
    if (!recording_ || JTKTestSuite::recorder().get() != this) return;
    auto protector = shared_from_this();
    const platform::Value* value = notification.userInfo.find("MenuItem");
    auto item = value ? std::dynamic_pointer_cast<platform::MenuItem>(value->object()) : nullptr;
    if (!item) return;
    // C++ records the commands of submenus too: a replay must choose them.
    auto place = menuBarPlace(item);
    if (place && (place->direct || dialect_ == JTKDialect::cpp)) return recordMenuBarCommand(*item, *place->title);
    if (lastClickedElement_) lastClickedElement_->clickMenuItem(item->title(), 0);
}

void JTKRecorder::recordMenuBarCommand(const platform::MenuItem& item, const platform::MenuItem& barTitle) {
    // A menu-bar command is recorded as its shortcut. Without one, C++
    // chooses it from its title where the bar's titles are views; else it
    // is not recorded.
    std::string keyEquivalent = item.keyEquivalent();
    auto titleView = dialect_ == JTKDialect::cpp ? barTitle.titleView() : nullptr;
    if (!keyEquivalent.empty()) {
        std::string key = jtkShortcutKey(keyEquivalent);
        const auto& codes = JTKTestSuite::keyCodeMap();
        if (auto code = codes.find(key); code != codes.end()) {
            uint64_t flags = shortcutFlags(item.keyEquivalentModifierMask());
            // Swift and Objective-C leave out the Shift that an upper-case key
            // implies; a C++ replay would then choose another command.
            if (dialect_ == JTKDialect::cpp && impliesShift(keyEquivalent)) flags |= platform::eventFlags::shift;
            JTKTestSuite::typeKey(code->second, flags);
            return;
        }
        if (!titleView) {
            jtkPrintLine("JTK: the shortcut \"" + key + "\" of the menu command \"" + item.title() +
                         "\" has no key code; the command is not recorded");
            return;
        }
    }
    // A statement of its own, never chained onto the line before.
    if (titleView) {
        JTKElement title(titleView);
        record(&title, "clickMenuItem(title:flags:)", {item.title(), JTKEventFlags{0}}, false);
    }
}

std::optional<std::string> JTKRecorder::observedText(const platform::Notification& notification) const {
    // The notifications name the edited control; the text object rides in the user info.
    const platform::Value* value = notification.userInfo.find(platform::textObjectKey);
    auto textObject = value ? value->object() : nullptr;
    if (!textObject || textObject != observedTextObject_.lock()) return std::nullopt;
    return platform::textObjectString(*textObject);
}

void JTKRecorder::observeTextObject(const std::shared_ptr<platform::Object>& textObject) {
    std::weak_ptr<JTKRecorder> weak = weak_from_this();
    observedTextObject_ = textObject;
    auto& center = platform::defaultNotificationCenter();
    textDidEndEditingObserver_ = center.addObserver(platform::textDidEndEditingNotification, {},
                                                    platform::DeliveryQueue::postingThread, [weak](const auto& notification) {
                                                        if (auto self = weak.lock()) self->didEndEditing(notification);
                                                    });
    textDidChangeObserver_ = center.addObserver(platform::textDidChangeNotification, {},
                                                platform::DeliveryQueue::postingThread, [weak](const auto& notification) {
                                                    if (auto self = weak.lock()) self->textDidChange(notification);
                                                });
}

void JTKRecorder::removeTextObservers() {
    auto& center = platform::defaultNotificationCenter();
    if (textDidEndEditingObserver_) center.removeObserver(textDidEndEditingObserver_);
    if (textDidChangeObserver_) center.removeObserver(textDidChangeObserver_);
    textDidEndEditingObserver_ = textDidChangeObserver_ = 0;
    observedTextObject_.reset();
    textAtReturn_.reset();
}

void JTKRecorder::textDidChange(const platform::Notification& notification) {
    auto text = observedText(notification);
    if (!recording_ || !text) return;
    textIsEditing_ = true;
    // Typing after a Return that did not end the editing (a line break in a text view).
    if (textAtReturn_ && text->size() > textAtReturn_->size()) textAtReturn_.reset();
    currentTextBuffer_ = *text;
}

void JTKRecorder::didEndEditing(const platform::Notification& notification) {
    if (!recording_ || !textIsEditing_ || JTKTestSuite::recorder().get() != this) return;
    auto text = observedText(notification);
    if (!text) return;
    auto protector = shared_from_this();
    textIsEditing_ = false;
    // What was typed before Return, not what the program left in the field.
    std::string typed = textAtReturn_.value_or(*text);
    textAtReturn_.reset();
    // Editing ended with Return: the typed text ends with a carriage return,
    // which the literal writes as its escape.
    if (!typed.ends_with('\r')) typed += '\r';
    recordTypedText(typed);
}

void JTKRecorder::flushTypedText() {
    // A Return whose end of editing never came is typed all the same.
    std::string text = textAtReturn_ ? *textAtReturn_ + '\r' : std::move(currentTextBuffer_);
    currentTextBuffer_.clear();
    textAtReturn_.reset();
    textIsEditing_ = false;
    recordTypedText(text);
}

void JTKRecorder::recordTypedText(const std::string& text) {
    // The text is the text object's whole text. Typed into a field that held
    // text already, a C++ replay would add it to that text: it selects all first.
    if (dialect_ == JTKDialect::cpp && !editingBaseline_.empty()) {
        const auto& codes = JTKTestSuite::keyCodeMap();
        if (auto a = codes.find("a"); a != codes.end()) JTKTestSuite::typeKey(a->second, platform::eventFlags::command);
    }
    JTKTestSuite::typeText(text);
}

}  // namespace jtk
