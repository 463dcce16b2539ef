// Menus over GMenuModel as the framework sees a window's menu bar: titles
// without mnemonics, shortcuts as key equivalents, performing an item, and
// what a person does in a real menu (a click on a title and an item, a
// shortcut) reaching the notifications once each.
#include <gtest/gtest.h>

#include "GtkMenus.h"
#include "GtkMenusFixture.h"
#include "GtkWrappers.h"
#include "JTK/platform/Notifications.h"

namespace {

using namespace gtkmenus;
namespace flags = jtk::platform::eventFlags;
using jtk::platform::Notification;

// The application the windows belong to, for its accelerators.
GtkApplication* application() {
    static GtkApplication* app = [] {
        GtkApplication* made = gtk_application_new("org.jtk.GtkMenuTests", G_APPLICATION_NON_UNIQUE);
        g_application_register(G_APPLICATION(made), nullptr, nullptr);
        return made;
    }();
    return app;
}

// Notifications of one name with the title of the item they carry (or of the menu).
struct Heard {
    std::vector<std::string> titles;
    uint64_t token;
    explicit Heard(const char* name) {
        token = jtk::platform::defaultNotificationCenter().addObserver(
            name, {}, jtk::platform::DeliveryQueue::postingThread, [this](const Notification& note) {
                auto* value = note.userInfo.find("MenuItem");
                auto item = value ? std::dynamic_pointer_cast<jtk::platform::MenuItem>(value->object()) : nullptr;
                auto menu = std::dynamic_pointer_cast<jtk::platform::Menu>(note.object.object());
                titles.push_back(item ? item->title() : menu ? menu->title() : "?");
            });
    }
    ~Heard() { jtk::platform::defaultNotificationCenter().removeObserver(token); }
};

// A window with View (Refresh: F5 from the application; Pick A and B in a
// section; More ▸ Deep) and Edit (Upper Case) in its menu bar, counting what its actions did.
struct NotesWindow {
    GtkWidget* window;
    std::vector<std::string> done;

    NotesWindow() {
        GMenu* bar = g_menu_new();
        GMenu* view = g_menu_new();
        g_menu_append(view, "_Refresh", "win.refresh");
        GMenu* section = g_menu_new();
        g_menu_append(section, "Pick A", "win.pick::a");
        g_menu_append(section, "Pick B", "win.pick::b");
        g_menu_append_section(view, nullptr, G_MENU_MODEL(section));
        GMenu* more = g_menu_new();
        g_menu_append(more, "Deep", "win.refresh");
        g_menu_append_submenu(view, "More", G_MENU_MODEL(more));
        GMenu* edit = g_menu_new();
        g_menu_append(edit, "_Upper Case", "win.upper");
        g_menu_append_submenu(bar, "_View", G_MENU_MODEL(view));
        g_menu_append_submenu(bar, "_Edit", G_MENU_MODEL(edit));
        GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
        gtk_box_append(GTK_BOX(box), gtk_popover_menu_bar_new_from_model(G_MENU_MODEL(bar)));
        for (GMenu* model : {bar, view, section, more, edit}) g_object_unref(model);
        const char* refreshKeys[] = {"F5", nullptr};
        gtk_application_set_accels_for_action(application(), "win.refresh", refreshKeys);
        window = showWindow(box, application());
        static const GActionEntry entries[] = {
            {"refresh", +[](GSimpleAction*, GVariant*, gpointer self) { static_cast<NotesWindow*>(self)->done.push_back("refresh"); }, nullptr, nullptr, nullptr, {}},
            {"upper", +[](GSimpleAction*, GVariant*, gpointer self) { static_cast<NotesWindow*>(self)->done.push_back("upper"); }, nullptr, nullptr, nullptr, {}},
            {"pick", +[](GSimpleAction*, GVariant* which, gpointer self) {
                 static_cast<NotesWindow*>(self)->done.push_back(std::string("pick ") + g_variant_get_string(which, nullptr));
             }, "s", nullptr, nullptr, {}}};
        g_action_map_add_action_entries(G_ACTION_MAP(window), entries, G_N_ELEMENTS(entries), this);
    }
    ~NotesWindow() { gtk_window_destroy(GTK_WINDOW(window)); }

    std::shared_ptr<jtk::platform::Menu> submenu(size_t index) { return jtk::gtk::mainMenuOf(window)->itemArray().at(index)->submenu(); }
};

struct ItemCase {
    const char* label;
    const char* accel;  // the item's own attribute; none: the application's accelerator, if any
    const char* applicationAccel;
    const char* title;
    const char* keyEquivalent;
    uint64_t modifiers;
};

class GtkMenuItemTest : public ::testing::TestWithParam<ItemCase> {};

TEST_P(GtkMenuItemTest, itemShowsTitleAndKeyEquivalent) {
    const auto& param = GetParam();
    GMenu* bar = g_menu_new();
    GMenu* file = g_menu_new();
    GMenuItem* item = g_menu_item_new(param.label, "win.save");
    if (param.accel) g_menu_item_set_attribute(item, "accel", "s", param.accel);
    g_menu_append_item(file, item);
    g_menu_append_submenu(bar, "_File", G_MENU_MODEL(file));
    const char* accels[] = {param.applicationAccel, nullptr};
    gtk_application_set_accels_for_action(application(), "win.save", accels);
    GtkWidget* window = showWindow(gtk_popover_menu_bar_new_from_model(G_MENU_MODEL(bar)), application());

    auto menuBar = jtk::gtk::mainMenuOf(window);
    ASSERT_TRUE(menuBar);
    ASSERT_EQ(menuBar->itemArray().size(), 1u);
    auto fileMenu = menuBar->itemArray()[0]->submenu();
    ASSERT_TRUE(fileMenu);
    EXPECT_EQ(fileMenu->title(), "File");
    auto saved = fileMenu->itemArray().at(0);
    EXPECT_EQ(saved->title(), param.title);
    EXPECT_EQ(saved->keyEquivalent(), param.keyEquivalent);
    EXPECT_EQ(saved->keyEquivalentModifierMask(), param.modifiers);
    EXPECT_EQ(saved->menu(), fileMenu);
    EXPECT_EQ(fileMenu->indexOfItem(saved), 0);
    // The same item however it is reached.
    EXPECT_EQ(jtk::gtk::mainMenuOf(window)->itemArray()[0]->submenu()->itemArray()[0], saved);
    gtk_window_destroy(GTK_WINDOW(window));
    g_object_unref(item);
    g_object_unref(file);
    g_object_unref(bar);
}

INSTANTIATE_TEST_SUITE_P(
    Shortcuts, GtkMenuItemTest,
    ::testing::Values(ItemCase{"_Save", "<Control>s", nullptr, "Save", "s", flags::command},
                      ItemCase{"Save _As…", "<Control><Shift>s", nullptr, "Save As…", "s", flags::command | flags::shift},
                      ItemCase{"Fish __ Chips", "<Super><Alt>f", nullptr, "Fish _ Chips", "f", flags::control | flags::alternate},
                      ItemCase{"_Refresh", nullptr, "F5", "Refresh", "F5", 0},
                      ItemCase{"Plain", nullptr, nullptr, "Plain", "", 0}));

TEST(GtkMenuTest, sectionsAreShownInlineAndSubmenusNest) {
    NotesWindow notes;
    std::vector<std::string> titles;
    for (const auto& item : notes.submenu(0)->itemArray()) titles.push_back(item->title());
    EXPECT_EQ(titles, (std::vector<std::string>{"Refresh", "Pick A", "Pick B", "More"}));
    auto more = notes.submenu(0)->itemArray()[3]->submenu();
    ASSERT_TRUE(more);
    EXPECT_EQ(more->title(), "More");
    EXPECT_EQ(more->itemArray().at(0)->title(), "Deep");
}

TEST(GtkMenuTest, performingAnItemActivatesItsActionOnceAndPostsTheNotification) {
    NotesWindow notes;
    Heard sent(jtk::platform::menuDidSendActionNotification);
    notes.submenu(0)->performActionForItemAtIndex(2);
    notes.submenu(1)->performActionForItemAtIndex(0);
    EXPECT_EQ(notes.done, (std::vector<std::string>{"pick b", "upper"}));
    EXPECT_EQ(sent.titles, (std::vector<std::string>{"Pick B", "Upper Case"}));
}

TEST(GtkMenuTest, aPersonsChoiceInTheMenuBarIsHeardOnce) {
    NotesWindow notes;
    Heard began(jtk::platform::menuDidBeginTrackingNotification), sent(jtk::platform::menuDidSendActionNotification);
    auto editTitle = jtk::gtk::mainMenuOf(notes.window)->itemArray().at(1)->titleView();
    ASSERT_TRUE(editTitle);
    EXPECT_EQ(editTitle->className(), "GtkPopoverMenuBarItem");
    EXPECT_EQ(editTitle->performSelector("title"), jtk::platform::Value(std::string("Edit")));
    click(eventPointOf(*editTitle));
    ASSERT_TRUE(turnUntil([&] { return !began.titles.empty(); })) << "no menu opened";
    EXPECT_EQ(began.titles.front(), "Edit");
    GtkWidget* button = nullptr;
    ASSERT_TRUE(turnUntil([&] {
        GtkWidget* popover = findMapped(notes.window, "GtkPopoverMenu");
        return (button = popover ? findMapped(popover, "GtkModelButton", "Upper Case") : nullptr) != nullptr;
    }));
    click(eventPointOf(*jtk::gtk::viewFor(button)));
    EXPECT_EQ(notes.done, std::vector<std::string>{"upper"});
    EXPECT_EQ(sent.titles, std::vector<std::string>{"Upper Case"});
}

TEST(GtkMenuTest, aShortcutOfAMenuBarItemIsAChoiceAndCancellingClosesTheMenu) {
    NotesWindow notes;
    Heard sent(jtk::platform::menuDidSendActionNotification);
    constexpr uint16_t f5 = 96;
    pressKey(f5);
    EXPECT_EQ(notes.done, std::vector<std::string>{"refresh"});
    EXPECT_EQ(sent.titles, std::vector<std::string>{"Refresh"});

    click(eventPointOf(*jtk::gtk::mainMenuOf(notes.window)->itemArray().at(0)->titleView()));
    ASSERT_TRUE(turnUntil([&] { return findMapped(notes.window, "GtkPopoverMenu") != nullptr; }));
    notes.submenu(0)->cancelTracking();
    EXPECT_TRUE(turnUntil([&] { return findMapped(notes.window, "GtkPopoverMenu") == nullptr; }));
}

}  // namespace
