// Menus over GMenuModel as the framework sees a window's menu bar: titles
// without mnemonics, shortcuts as key equivalents, sections inline, and
// performing an item, a person's click in an open menu and a shortcut each
// heard once.
#include <gtest/gtest.h>

#include <ostream>

#include "GtkMenus.h"
#include "GtkMenusFixture.h"
#include "JTK/platform/Notifications.h"

namespace {

using namespace gtkmenus;
namespace flags = platform::eventFlags;

// The application the windows belong to, for its accelerators.
GtkApplication* application() {
    static GtkApplication* made = [] {
        GtkApplication* app = gtk_application_new("org.jtk.GtkMenuTests", G_APPLICATION_NON_UNIQUE);
        g_application_register(G_APPLICATION(app), nullptr, nullptr);
        return app;
    }();
    return made;
}

// A window whose bar holds File (one item with the case's label), View
// (Refresh; a section with Pick A and B; More ▸ Deep) and Edit (Upper Case).
struct MenuWindow {
    GtkWidget* window;
    std::vector<std::string> done;  // what its actions did

    explicit MenuWindow(GMenuItem* fileItem) {
        GMenu *bar = g_menu_new(), *file = g_menu_new(), *view = g_menu_new(), *picks = g_menu_new(), *more = g_menu_new(),
              *edit = g_menu_new();
        g_menu_append_item(file, fileItem);
        g_menu_append(view, "_Refresh", "win.act::refresh");
        g_menu_append(picks, "Pick A", "win.act::a");
        g_menu_append(picks, "Pick B", "win.act::b");
        g_menu_append_section(view, nullptr, G_MENU_MODEL(picks));
        g_menu_append(more, "Deep", "win.act::deep");
        g_menu_append_submenu(view, "More", G_MENU_MODEL(more));
        g_menu_append(edit, "_Upper Case", "win.act::upper");
        g_menu_append_submenu(bar, "_File", G_MENU_MODEL(file));
        g_menu_append_submenu(bar, "_View", G_MENU_MODEL(view));
        g_menu_append_submenu(bar, "_Edit", G_MENU_MODEL(edit));
        const char* refreshKeys[] = {"F5", nullptr};
        gtk_application_set_accels_for_action(application(), "win.act::refresh", refreshKeys);
        window = showWindow(gtk_popover_menu_bar_new_from_model(G_MENU_MODEL(bar)), application());
        for (GMenu* model : {bar, file, view, picks, more, edit}) g_object_unref(model);
        static const GActionEntry act{"act", +[](GSimpleAction*, GVariant* what, gpointer self) {
            static_cast<MenuWindow*>(self)->done.push_back(g_variant_get_string(what, nullptr));
        }, "s", nullptr, nullptr, {}};
        g_action_map_add_action_entries(G_ACTION_MAP(window), &act, 1, this);
    }
    ~MenuWindow() { gtk_window_destroy(GTK_WINDOW(window)); }

    std::shared_ptr<platform::MenuItem> barItem(size_t index) { return jtk::gtk::mainMenuOf(window)->itemArray().at(index); }
    std::vector<std::string> titles(size_t barIndex) {
        std::vector<std::string> titles;
        for (const auto& item : barItem(barIndex)->submenu()->itemArray()) titles.push_back(item->title());
        return titles;
    }
};

struct ItemCase {
    const char* label;
    const char* accel;  // the item's own; else the application's F5 for "win.act::refresh"
    const char* title;
    const char* keyEquivalent;
    uint64_t modifiers;
    friend void PrintTo(const ItemCase& c, std::ostream* out) { *out << c.label; }
};

class GtkMenuItemTest : public ::testing::TestWithParam<ItemCase> {};

TEST_P(GtkMenuItemTest, itemShowsTitleAndKeyEquivalentAndStaysOneObject) {
    const auto& param = GetParam();
    GMenuItem* item = g_menu_item_new(param.label, param.accel ? "win.act::save" : "win.act::refresh");
    if (param.accel) g_menu_item_set_attribute(item, "accel", "s", param.accel);
    MenuWindow menus(item);
    g_object_unref(item);
    auto fileMenu = menus.barItem(0)->submenu();
    ASSERT_TRUE(fileMenu);
    EXPECT_EQ(fileMenu->title(), "File");
    auto saved = fileMenu->itemArray().at(0);
    EXPECT_EQ(saved->title(), param.title);
    EXPECT_EQ(saved->keyEquivalent(), param.keyEquivalent);
    EXPECT_EQ(saved->keyEquivalentModifierMask(), param.modifiers);
    EXPECT_EQ(saved->menu(), fileMenu);
    EXPECT_EQ(fileMenu->indexOfItem(saved), 0);
    EXPECT_EQ(menus.barItem(0)->submenu()->itemArray().at(0), saved);
}

INSTANTIATE_TEST_SUITE_P(
    Shortcuts, GtkMenuItemTest,
    ::testing::Values(ItemCase{"_Save", "<Control>s", "Save", "s", flags::command},
                      ItemCase{"Save _As…", "<Control><Shift>s", "Save As…", "s", flags::command | flags::shift},
                      ItemCase{"Fish __ Chips", "<Super><Alt>f", "Fish _ Chips", "f", flags::control | flags::alternate},
                      ItemCase{"Plain", "", "Plain", "", 0}, ItemCase{"_Again", nullptr, "Again", "F5", 0}),
    [](const auto& info) { return "case" + std::to_string(info.index); });

TEST(GtkMenuTest, performingAClickInAnOpenMenuAndAShortcutAreEachHeardOnce) {
    GMenuItem* item = g_menu_item_new("Plain", "win.act::plain");
    MenuWindow menus(item);
    g_object_unref(item);
    EXPECT_EQ(menus.titles(1), (std::vector<std::string>{"Refresh", "Pick A", "Pick B", "More"}));
    EXPECT_EQ(menus.barItem(1)->submenu()->itemArray().at(3)->submenu()->title(), "More");
    std::vector<std::string> began, sent;
    auto& center = platform::defaultNotificationCenter();
    uint64_t tokens[] = {
        center.addObserver(platform::menuDidBeginTrackingNotification, {}, platform::DeliveryQueue::postingThread,
                           [&](const auto& note) { began.push_back(std::dynamic_pointer_cast<platform::Menu>(note.object.object())->title()); }),
        center.addObserver(platform::menuDidSendActionNotification, {}, platform::DeliveryQueue::postingThread, [&](const auto& note) {
            sent.push_back(std::dynamic_pointer_cast<platform::MenuItem>(note.userInfo.find("MenuItem")->object())->title());
        })};

    menus.barItem(1)->submenu()->performActionForItemAtIndex(2);
    auto editTitle = menus.barItem(2)->titleView();
    ASSERT_TRUE(editTitle);
    EXPECT_EQ(editTitle->className(), "GtkPopoverMenuBarItem");
    click(jtk::gtk::widgetOf(*editTitle));
    GtkWidget* upper = nullptr;
    ASSERT_TRUE(turnUntil([&] { return (upper = findMapped(menus.window, "GtkModelButton", "Upper Case")) != nullptr; }));
    click(upper);
    constexpr uint16_t f5 = 96;
    pressKey(f5);
    click(jtk::gtk::widgetOf(*menus.barItem(1)->titleView()));
    ASSERT_TRUE(turnUntil([&] { return findMapped(menus.window, "GtkPopoverMenu") != nullptr; }));
    menus.barItem(1)->submenu()->cancelTracking();
    EXPECT_TRUE(turnUntil([&] { return findMapped(menus.window, "GtkPopoverMenu") == nullptr; }));

    EXPECT_EQ(menus.done, (std::vector<std::string>{"b", "upper", "refresh"}));
    EXPECT_EQ(sent, (std::vector<std::string>{"Pick B", "Upper Case", "Refresh"}));
    EXPECT_EQ(began, (std::vector<std::string>{"Edit", "View"}));
    for (uint64_t token : tokens) center.removeObserver(token);
}

}  // namespace
