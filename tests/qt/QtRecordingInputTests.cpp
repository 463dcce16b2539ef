// What a person's input tells the recorder on Qt: a menu choice (in the open
// menu or by its shortcut) posts "MenuDidSendActionNotification" and other
// triggers of the same action do not; a field changes by typing, not by the
// program's setText; the menu-bar title of a command is a view.
#include <QAction>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <functional>

#include "JTK/platform/Menu.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Text.h"
#include "QtFixture.h"
#include "QtWrappers.h"

namespace {

using jtk::platform::defaultNotificationCenter;
using jtk::platform::DeliveryQueue;
using jtk::platform::Notification;

// Counts a notification from any sender while alive.
struct Counter {
    explicit Counter(const char* name) {
        token = defaultNotificationCenter().addObserver(name, {}, DeliveryQueue::postingThread,
                                                         [this](const Notification&) { ++count; });
    }
    ~Counter() { defaultNotificationCenter().removeObserver(token); }
    uint64_t token = 0;
    int count = 0;
};

struct Trigger {
    const char* label;
    // Triggers the Refresh action (F5, in the View menu and on a tool bar).
    std::function<void(QMainWindow&, QMenu&, QAction&)> trigger;
    bool isMenuChoice;
    friend void PrintTo(const Trigger& c, std::ostream* out) { *out << c.label; }
};

class QtRecordingInput : public qttest::QtTest {};

class QtMenuChoices : public qttest::QtTest, public ::testing::WithParamInterface<Trigger> {};

TEST_P(QtMenuChoices, areNotifiedOnlyWhenAPersonChoosesFromAMenu) {
    auto* window = makeWindow<QMainWindow>(QRect(100, 100, 300, 200));
    QMenu* view = window->menuBar()->addMenu(QStringLiteral("&View"));
    QAction* refresh = view->addAction(QStringLiteral("&Refresh"));
    refresh->setShortcut(QKeySequence(Qt::Key_F5));
    window->addToolBar(QStringLiteral("Tools"))->addAction(refresh);
    window->setCentralWidget(new QLineEdit);
    qttest::pump(20);
    int triggered = 0;
    QObject::connect(refresh, &QAction::triggered, [&] { ++triggered; });

    Counter choices(jtk::platform::menuDidSendActionNotification);
    GetParam().trigger(*window, *view, *refresh);
    qttest::pump(20);
    EXPECT_EQ(triggered, 1);
    EXPECT_EQ(choices.count, GetParam().isMenuChoice ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Triggers, QtMenuChoices,
    ::testing::Values(
        Trigger{"shortcut", [](QMainWindow& window, QMenu&, QAction&) { QTest::keyClick(&window, Qt::Key_F5); }, true},
        Trigger{"clickInTheOpenMenu",
                [](QMainWindow&, QMenu& menu, QAction& action) {
                    menu.popup(QPoint(120, 140));
                    qttest::pump(20);
                    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&action).center());
                },
                true},
        Trigger{"program", [](QMainWindow&, QMenu&, QAction& action) { action.trigger(); }, false},
        Trigger{"toolButton",
                [](QMainWindow& window, QMenu&, QAction& action) {
                    auto* bar = window.findChild<QToolBar*>();
                    QTest::mouseClick(bar->widgetForAction(&action), Qt::LeftButton);
                },
                false}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(QtRecordingInput, aMenuBarCommandsTitleIsItsPartOfTheBar) {
    auto* window = makeWindow<QMainWindow>(QRect(100, 100, 300, 200));
    window->menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("Open"));
    auto hidden = window->menuBar()->addMenu(QStringLiteral("Hidden"));
    hidden->menuAction()->setVisible(false);
    window->menuBar()->addMenu(QStringLiteral("&Edit"))->addAction(QStringLiteral("Bold"));
    qttest::pump(20);
    auto bar = jtk::qt::menuBarFor(window->menuBar());
    ASSERT_EQ(bar->itemArray().size(), 3u);
    auto edit = bar->itemArray()[2]->titleView();
    ASSERT_TRUE(edit);
    EXPECT_EQ(edit->className(), "QMenuBarItem");
    EXPECT_EQ(edit->performSelector("title").text() ? *edit->performSelector("title").text() : "", "Edit");
    EXPECT_FALSE(bar->itemArray()[1]->titleView()) << "a hidden title has no part";
    EXPECT_FALSE(bar->itemArray()[0]->submenu()->itemArray()[0]->titleView()) << "a command in a menu is no title";
}

TEST_F(QtRecordingInput, aFieldChangesByTypingNotByTheProgram) {
    auto* window = makeWindow(QRect(100, 100, 300, 100));
    auto* field = new QLineEdit(window);
    field->show();
    field->setFocus();
    qttest::pump(20);
    Counter changes(jtk::platform::textDidChangeNotification);
    field->setText(QStringLiteral("42"));
    EXPECT_EQ(changes.count, 0) << "the program's own text is nothing typed";
    QTest::keyClicks(field, QStringLiteral("ab"));
    EXPECT_EQ(changes.count, 2);
    EXPECT_EQ(jtk::platform::textObjectString(*jtk::qt::viewFor(field)), "42ab");
}

}  // namespace
