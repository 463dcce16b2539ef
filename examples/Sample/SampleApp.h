// The Sample application: a small note-taking window with counters, text
// fields, a slider, a colour pop-up, a scrolling list of rows, a settings box
// and a details panel that appears a moment after it is asked for, plus an
// inspector window and a main menu. Its state shows in labels, so both a
// person and a UI test can read it.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Label.h"

namespace sample {

class SampleApp {
public:
    // Builds the windows and the main menu (main thread).
    SampleApp();

    // Reads the greeting and the note count from the application's data
    // folder and the user name from the user defaults.
    void loadData();

    const std::shared_ptr<jtk::desktop::Window>& mainWindow() const { return mainWindow_; }

private:
    void buildMainWindow();
    void buildInspectorWindow();
    void buildMainMenu();
    void showDetailsPanelSoon();
    std::shared_ptr<jtk::desktop::Label> addLabel(const std::shared_ptr<jtk::desktop::View>& parent, jtk::platform::Rect frame,
                                             std::string text, std::string name = {});

    std::shared_ptr<jtk::desktop::Window> mainWindow_;
    std::shared_ptr<jtk::desktop::Window> inspectorWindow_;
    std::shared_ptr<jtk::desktop::Window> detailsPanel_;
    std::shared_ptr<jtk::desktop::Label> greetingLabel_;
    std::shared_ptr<jtk::desktop::Label> userLabel_;
    std::shared_ptr<jtk::desktop::Label> countLabel_;
    std::shared_ptr<jtk::desktop::Label> doubleClickLabel_;
    std::shared_ptr<jtk::desktop::Label> selectionLabel_;
    std::shared_ptr<jtk::desktop::Label> fullNameLabel_;
    std::shared_ptr<jtk::desktop::Label> colourLabel_;
    std::shared_ptr<jtk::desktop::Label> rowLabel_;
    std::shared_ptr<jtk::desktop::Label> documentsLabel_;
    std::shared_ptr<jtk::desktop::Label> notesLabel_;
    int count_ = 0;
    int doubleClicks_ = 0;
    int documents_ = 0;
};

// The folder the application keeps its data in; none when the platform has no such folder.
std::optional<std::filesystem::path> dataFolder();

}  // namespace sample
