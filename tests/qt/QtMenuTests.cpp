// Menus as the framework sees a window's menu bar: titles without mnemonic
// markers, shortcuts as key equivalents, and performing an item.
#include <gtest/gtest.h>

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include "JTK/platform/Events.h"
#include "JTK/platform/Notifications.h"
#include "QtWrappers.h"

namespace {

namespace flags = jtk::platform::eventFlags;

struct ShortcutCase {
    const char* text;
    const char* shortcut;
    const char* title;
    const char* keyEquivalent;
    uint64_t modifiers;
};

class QtMenuShortcutTest : public ::testing::TestWithParam<ShortcutCase> {};

TEST_P(QtMenuShortcutTest, itemShowsTitleAndKeyEquivalent) {
    const auto& param = GetParam();
    QMainWindow window;
    QMenu* file = window.menuBar()->addMenu(QStringLiteral("&File"));
    QAction* action = file->addAction(QString::fromUtf8(param.text));
    action->setShortcut(QKeySequence(QString::fromUtf8(param.shortcut)));

    auto bar = jtk::qt::menuBarFor(window.menuBar());
    ASSERT_TRUE(bar);
    ASSERT_EQ(bar->itemArray().size(), 1u);
    auto fileMenu = bar->itemArray()[0]->submenu();
    ASSERT_TRUE(fileMenu);
    EXPECT_EQ(fileMenu->title(), "File");
    auto item = fileMenu->itemArray().at(0);
    EXPECT_EQ(item->title(), param.title);
    EXPECT_EQ(item->keyEquivalent(), param.keyEquivalent);
    EXPECT_EQ(item->keyEquivalentModifierMask(), param.modifiers);
    EXPECT_EQ(item->menu(), fileMenu);
    EXPECT_EQ(fileMenu->indexOfItem(item), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Shortcuts, QtMenuShortcutTest,
    ::testing::Values(ShortcutCase{"&Save", "Ctrl+S", "Save", "s", flags::command},
                      ShortcutCase{"Save &As…", "Ctrl+Shift+S", "Save As…", "s", flags::command | flags::shift},
                      ShortcutCase{"Fish && Chips", "Meta+Alt+F", "Fish & Chips", "f",
                                   flags::control | flags::alternate},
                      ShortcutCase{"Plain", "", "Plain", "", 0}));

TEST(QtMenuTest, performingAnItemTriggersItsActionAndPostsTheNotification) {
    QMainWindow window;
    QMenu* edit = window.menuBar()->addMenu(QStringLiteral("Edit"));
    edit->addAction(QStringLiteral("Undo"));
    QAction* copy = edit->addAction(QStringLiteral("Copy"));
    int triggered = 0;
    QObject::connect(copy, &QAction::triggered, [&] { ++triggered; });

    auto menu = jtk::qt::menuFor(edit);
    std::string postedTitle;
    auto& center = jtk::platform::defaultNotificationCenter();
    uint64_t token = center.addObserver(jtk::platform::menuDidSendActionNotification, menu,
                                        jtk::platform::DeliveryQueue::postingThread,
                                        [&](const jtk::platform::Notification& note) {
                                            const auto* value = note.userInfo.find("MenuItem");
                                            auto item = value ? std::dynamic_pointer_cast<jtk::platform::MenuItem>(
                                                                    value->object())
                                                              : nullptr;
                                            if (item) postedTitle = item->title();
                                        });
    menu->performActionForItemAtIndex(1);
    center.removeObserver(token);
    EXPECT_EQ(triggered, 1);
    EXPECT_EQ(postedTitle, "Copy");
}

TEST(QtMenuTest, showingAMenuPostsBeginTracking) {
    QMenu popup;
    popup.addAction(QStringLiteral("Item"));
    auto menu = jtk::qt::menuFor(&popup);
    int posted = 0;
    auto& center = jtk::platform::defaultNotificationCenter();
    uint64_t token = center.addObserver(jtk::platform::menuDidBeginTrackingNotification, menu,
                                        jtk::platform::DeliveryQueue::postingThread,
                                        [&](const jtk::platform::Notification&) { ++posted; });
    popup.popup(QPoint(10, 10));
    menu->cancelTracking();
    center.removeObserver(token);
    EXPECT_EQ(posted, 1);
    EXPECT_FALSE(popup.isVisible());
}

}  // namespace
