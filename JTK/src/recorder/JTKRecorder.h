// The recorder of a person's interactions: while it records, a local event
// monitor, the text notifications of the text object that has the keys and
// the menu-action notifications turn clicks, double clicks, drags, typing,
// Tab and menu choices into calls of the framework's own actions, which hand
// themselves back to the recorder (JTKTestSuite::recorder()) instead of
// posting events; each hand-over becomes one statement in the test source
// file. Everything but creation's file read runs on the main thread.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestRecorder.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Menu.h"
#include "JTK/platform/Notifications.h"
#include "recorder/JTKSourceFile.h"

namespace jtk {

class JTKRecorder final : public JTKTestRecorder, public std::enable_shared_from_this<JTKRecorder> {
public:
    using Clock = std::chrono::steady_clock;
    // Events this soon after creation are let through unrecorded: the press
    // that started the recording and what follows it at once.
    static constexpr double startDelay = 1.0;
    static constexpr double doubleClickInterval = 0.2;
    // A press that moves no farther than this many points is a click, not a drag.
    static constexpr double dragThreshold = 4.0;

    // Reads the file and starts watching; none, after printing why, when
    // the file cannot be read.
    static std::shared_ptr<JTKRecorder> make(const std::filesystem::path& file);
    ~JTKRecorder() override;

    void record(const JTKElement* element, const std::string& signature,
                const std::vector<JTKStringConvertable>& arguments, bool chained) override;
    // Removes the marker line, writes the file and ends every observation,
    // also when the file has no marker line.
    void stop() override;

    JTKDialect dialect() const { return dialect_; }
    // Moves the creation time back (tests need not wait out the start delay).
    void backdateStart(double seconds);
    // The event monitor's handler: returns the event unchanged, always.
    std::shared_ptr<platform::Event> handleEvent(std::shared_ptr<platform::Event> event);

private:
    struct DragRecorder {
        platform::Point mouseDownLocation;
        JTKElement element;
    };

    explicit JTKRecorder(JTKSourceFile file);
    void start();
    void recordOnMainThread(const JTKElement* element, const std::string& signature,
                            const std::vector<JTKStringConvertable>& arguments, bool chained);
    void handleWrite(JTKSourceFile::Write result);
    void endObservations();

    void noteResponder();
    void mouseDown(const platform::Event& event);
    void mouseUp(const platform::Event& event);
    void menuDidSelect(const platform::Notification& notification);
    void recordMenuBarCommand(const platform::MenuItem& item, const platform::MenuItem& barTitle);
    void textDidChange(const platform::Notification& notification);
    void didEndEditing(const platform::Notification& notification);
    // The observed text object's text, when the notification comes from it.
    std::optional<std::string> observedText(const platform::Notification& notification) const;
    void observeTextObject(const std::shared_ptr<platform::Object>& textObject);
    void removeTextObservers();
    void flushTypedText();
    void recordTypedText(const std::string& text);

    std::optional<JTKSourceFile> file_;
    JTKDialect dialect_;
    bool recording_ = false;
    uint64_t menuObserver_ = 0;
    uint64_t textDidEndEditingObserver_ = 0;
    uint64_t textDidChangeObserver_ = 0;
    uint64_t mainObserver_ = 0;
    std::weak_ptr<platform::Object> observedTextObject_;
    std::optional<JTKElement> lastClickedElement_;
    std::optional<JTKElement> elementOnMouseUp_;
    std::optional<DragRecorder> dragHandler_;
    bool textIsEditing_ = false;
    std::string currentTextBuffer_;
    // The typed text when Return was pressed during the current editing.
    std::optional<std::string> textAtReturn_;
    // What the observed text object held when the current editing began.
    std::string editingBaseline_;
    Clock::time_point startDate_;
    Clock::time_point lastMouseDownDate_;
    std::weak_ptr<platform::Object> lastResponder_;
    // C++ chains a call only onto a click, the one action that returns its element.
    bool lastCallReturnsElement_ = false;
};

}  // namespace jtk
