#include "SampleApp.h"

#include <fstream>
#include <sstream>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/desktop/controls/ScrollView.h"
#include "JTK/desktop/controls/Slider.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/desktop/render/DrawContext.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/UserDefaults.h"

namespace sample {

using jtk::platform::Rect;
using jtk::platform::Value;

namespace {

// Names a view for lookups, the way an application's view class does.
void nameView(jtk::platform::Object& view, std::string name) {
    view.addMethod("hbViewName", [name = std::move(name)](jtk::platform::Object&, const Value&) { return Value(name); });
}

// The list of rows: scrolls a row into view when asked to by name.
class SampleListView : public jtk::desktop::ScrollView {
public:
    explicit SampleListView(const Rect& frame) : ScrollView(frame) {
        addMethod("hbScrollToViewAnimated:", [](jtk::platform::Object& self, const Value& argument) {
            auto view = std::dynamic_pointer_cast<jtk::desktop::View>(argument.object());
            if (view) static_cast<SampleListView&>(self).scrollToVisible(*view);
            return Value();
        });
    }
};

// A document of the inspector: the model object behind the status view.
class SampleDocument : public jtk::platform::Object {};

// Shows the application's status; names itself and reports its value and model.
class SampleStatusView : public jtk::desktop::View {
public:
    explicit SampleStatusView(const Rect& frame) : View(frame), document_(std::make_shared<SampleDocument>()) {
        nameView(*this, "Status");
        addMethod("hbViewValue", [](jtk::platform::Object&, const Value&) { return Value("Ready"); });
        addMethod("hbModelObject", [this](jtk::platform::Object&, const Value&) { return Value(document_); });
    }

    // A green badge with the status text, as a status light shows it.
    void draw(jtk::desktop::DrawContext& context) const override {
        using jtk::desktop::Color;
        Rect all = bounds();
        Rect badge{all.minX() + 0.5, all.minY() + 0.5, all.width() - 1, all.height() - 1};
        context.fillRoundedRect(badge, badge.height() / 2, Color::rgb(226, 245, 230));
        context.strokeRoundedRect(badge, badge.height() / 2, Color::rgb(76, 175, 96));
        double dot = 12;
        context.fillEllipse({all.minX() + 14, all.midY() - dot / 2, dot, dot}, Color::rgb(52, 168, 83));
        context.drawText("Ready", {all.minX() + 36, all.minY(), all.width() - 48, all.height()},
                         {jtk::desktop::Font::boldSystem(), Color::rgb(24, 94, 44)});
    }

private:
    std::shared_ptr<SampleDocument> document_;
};

std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file);
    if (!in) return {};
    std::stringstream text;
    text << in.rdbuf();
    std::string content = text.str();
    while (!content.empty() && (content.back() == '\n' || content.back() == '\r')) content.pop_back();
    return content;
}

}  // namespace

std::optional<std::filesystem::path> dataFolder() {
    auto base = jtk::platform::applicationSupportDirectory();
    if (!base) return std::nullopt;
    return *base / jtk::desktop::Application::shared()->name();
}

SampleApp::SampleApp() {
    buildMainWindow();
    buildInspectorWindow();
    buildMainMenu();
    inspectorWindow_->orderFront();
    mainWindow_->makeKeyAndOrderFront();
}

std::shared_ptr<jtk::desktop::Label> SampleApp::addLabel(const std::shared_ptr<jtk::desktop::View>& parent, Rect frame,
                                                    std::string text, std::string name) {
    auto label = std::make_shared<jtk::desktop::Label>(frame, std::move(text));
    if (!name.empty()) nameView(*label, std::move(name));
    parent->addSubview(label);
    return label;
}

void SampleApp::buildMainWindow() {
    mainWindow_ = jtk::desktop::Window::make(Rect{100, 200, 600, 520}, "Sample");
    auto content = mainWindow_->desktopContentView();

    greetingLabel_ = addLabel(content, {20, 484, 560, 24}, "No greeting yet", "Greeting");
    userLabel_ = addLabel(content, {20, 454, 560, 24}, "User: nobody", "User");

    auto add = std::make_shared<jtk::desktop::Button>(Rect{20, 410, 100, 30}, "Add");
    add->setAction([this](jtk::desktop::Button&) { countLabel_->setStringValue("Count: " + std::to_string(++count_)); });
    content->addSubview(add);
    countLabel_ = addLabel(content, {130, 413, 200, 24}, "Count: 0", "Count");

    auto open = std::make_shared<jtk::desktop::Button>(Rect{20, 370, 100, 30}, "Open");
    open->setDoubleAction([this](jtk::desktop::Button&) {
        doubleClickLabel_->setStringValue("Double clicks: " + std::to_string(++doubleClicks_));
    });
    content->addSubview(open);
    doubleClickLabel_ = addLabel(content, {130, 373, 200, 24}, "Double clicks: 0", "DoubleClicks");

    auto select = std::make_shared<jtk::desktop::Button>(Rect{20, 330, 100, 30}, "Select");
    select->setAction([this](jtk::desktop::Button& button) {
        bool extended = button.lastEventFlags() & jtk::platform::eventFlags::shift;
        selectionLabel_->setStringValue(extended ? "Selection: extended" : "Selection: single");
    });
    content->addSubview(select);
    selectionLabel_ = addLabel(content, {130, 333, 200, 24}, "Selection: none", "Selection");

    auto firstName = std::make_shared<jtk::desktop::TextField>(Rect{20, 290, 150, 24});
    auto lastName = std::make_shared<jtk::desktop::TextField>(Rect{180, 290, 150, 24});
    nameView(*firstName, "FirstName");
    nameView(*lastName, "LastName");
    firstName->setNextKeyView(lastName);
    lastName->setNextKeyView(firstName);
    content->addSubview(firstName);
    content->addSubview(lastName);
    fullNameLabel_ = addLabel(content, {340, 290, 240, 24}, "Full name:", "FullName");
    auto updateFullName = [this, first = std::weak_ptr(firstName), last = std::weak_ptr(lastName)](jtk::desktop::TextField&) {
        auto f = first.lock(), l = last.lock();
        if (f && l) fullNameLabel_->setStringValue("Full name: " + f->stringValue() + " " + l->stringValue());
    };
    firstName->setOnChange(updateFullName);
    lastName->setOnChange(updateFullName);

    auto volume = std::make_shared<jtk::desktop::Slider>(Rect{20, 250, 200, 20}, 0, 100, 0);
    nameView(*volume, "Volume");
    volume->addMethod("hbViewValue", [](jtk::platform::Object& self, const Value&) {
        return Value(static_cast<int64_t>(static_cast<jtk::desktop::Slider&>(self).doubleValue()));
    });
    content->addSubview(volume);

    auto colour = std::make_shared<jtk::desktop::PopUpButton>(Rect{20, 210, 150, 26});
    nameView(*colour, "Colour");
    colourLabel_ = addLabel(content, {180, 211, 200, 24}, "Colour: none", "ColourChoice");
    auto chooseColour = [this](jtk::desktop::MenuItem& item) { colourLabel_->setStringValue("Colour: " + item.title()); };
    auto colours = jtk::desktop::Menu::make("Colour");
    for (const char* title : {"Red", "Green", "Blue"}) colours->addItem(jtk::desktop::MenuItem::make(title, chooseColour));
    auto more = jtk::desktop::MenuItem::make("More");
    auto moreColours = jtk::desktop::Menu::make("More");
    for (const char* title : {"Teal", "Navy"}) moreColours->addItem(jtk::desktop::MenuItem::make(title, chooseColour));
    more->setSubmenu(moreColours);
    colours->addItem(more);
    colour->setMenu(colours);
    colour->selectItemWithTitle("Red");
    content->addSubview(colour);

    auto list = std::make_shared<SampleListView>(Rect{20, 20, 250, 170});
    nameView(*list, "Rows");
    auto rows = std::make_shared<jtk::desktop::View>(Rect{0, 0, 234, 30 * 30});
    for (int i = 1; i <= 30; ++i) {
        auto row = std::make_shared<jtk::desktop::Button>(Rect{0, 900.0 - 30 * i, 234, 30}, "Row " + std::to_string(i));
        row->setAction([this](jtk::desktop::Button& button) { rowLabel_->setStringValue("Selected: " + button.title()); });
        rows->addSubview(row);
    }
    list->setDocumentView(rows);
    list->scroll({0, 900 - list->contentSize().height});  // the first row at the top
    content->addSubview(list);
    rowLabel_ = addLabel(content, {290, 166, 290, 24}, "Selected: none", "SelectedRow");

    auto settings = std::make_shared<jtk::desktop::Box>(Rect{290, 60, 290, 96}, "Settings");
    auto darkMode = std::make_shared<jtk::desktop::Button>(Rect{10, 40, 150, 24}, "Dark mode", jtk::desktop::Button::Type::checkbox);
    settings->addSubview(darkMode);
    auto theme = addLabel(settings, {10, 10, 150, 24}, "Theme: light", "Theme");
    darkMode->setAction([theme = std::weak_ptr(theme)](jtk::desktop::Button& button) {
        if (auto label = theme.lock()) label->setStringValue(button.state() ? "Theme: dark" : "Theme: light");
    });
    content->addSubview(settings);

    auto showDetails = std::make_shared<jtk::desktop::Button>(Rect{290, 20, 120, 30}, "Show Details");
    showDetails->setAction([this](jtk::desktop::Button&) { showDetailsPanelSoon(); });
    content->addSubview(showDetails);
    documentsLabel_ = addLabel(content, {420, 23, 160, 24}, "Documents: 0", "Documents");
    notesLabel_ = addLabel(content, {420, 454, 160, 24}, "Notes: 0", "Notes");
    // An unnamed container, as real windows have plenty of.
    content->addSubview(std::make_shared<jtk::desktop::View>(Rect{0, 0, 10, 10}));
}

void SampleApp::buildInspectorWindow() {
    inspectorWindow_ = jtk::desktop::Window::make(Rect{720, 200, 300, 200}, "Inspector");
    auto content = inspectorWindow_->desktopContentView();
    auto icon = std::make_shared<jtk::desktop::ImageView>(Rect{20, 140, 48, 48},
                                                          std::string(JTK_SAMPLE_SOURCE_DIR) + "/Resources/SampleIcon.png");
    content->addSubview(icon);
    addLabel(content, {80, 152, 200, 24}, "Inspector");
    content->addSubview(std::make_shared<SampleStatusView>(Rect{20, 84, 260, 40}));
    addLabel(content, {20, 40, 260, 24}, "Notes are kept in Documents/");
}

void SampleApp::buildMainMenu() {
    auto mainMenu = jtk::desktop::Menu::make("Main");
    auto file = jtk::desktop::MenuItem::make("File");
    auto fileMenu = jtk::desktop::Menu::make("File");
    fileMenu->addItem(jtk::desktop::MenuItem::make(
        "New Document",
        [this](jtk::desktop::MenuItem&) { documentsLabel_->setStringValue("Documents: " + std::to_string(++documents_)); },
        "n", jtk::platform::eventFlags::command));
    file->setSubmenu(fileMenu);
    mainMenu->addItem(file);
    jtk::desktop::Application::shared()->setMainMenu(mainMenu);
}

void SampleApp::showDetailsPanelSoon() {
    // The panel takes a moment to prepare, as a real one loading its content would.
    jtk::platform::dispatchAfterMain(0.3, [this] {
        if (detailsPanel_) return;
        detailsPanel_ = jtk::desktop::Window::make(Rect{300, 100, 240, 120}, "Details");
        addLabel(detailsPanel_->desktopContentView(), {20, 60, 200, 24}, "Details ready", "DetailsStatus");
        detailsPanel_->makeKeyAndOrderFront();
    });
}

void SampleApp::loadData() {
    auto folder = dataFolder();
    std::string greeting = folder ? readFile(*folder / "greeting.txt") : "";
    greetingLabel_->setStringValue(greeting.empty() ? "No greeting yet" : greeting);
    int notes = 0;
    std::error_code error;
    if (folder)
        for (auto it = std::filesystem::directory_iterator(*folder / "Documents", error);
             !error && it != std::filesystem::directory_iterator(); it.increment(error))
            ++notes;
    notesLabel_->setStringValue("Notes: " + std::to_string(notes));
    Value userName = jtk::platform::standardUserDefaults().objectForKey("userName");
    const std::string* user = userName.text();
    userLabel_->setStringValue("User: " + (user ? *user : std::string("nobody")));
}

}  // namespace sample
