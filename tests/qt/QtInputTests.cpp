// Real input through the framework, posted from a test queue while this
// thread runs Qt: what an event monitor sees of a click, and a command key
// reaching a shortcut. (Clicks, double clicks and typing reaching Qt's widgets
// are the backend-neutral tests'.)
#include <QPushButton>
#include <QShortcut>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "QtFixture.h"

using namespace jtk;
using qttest::QtTest;

namespace {

class QtInput : public QtTest {
protected:
    QWidget* window = nullptr;
    QPushButton* button = nullptr;
    int clicks = 0;

    void SetUp() override {
        QtTest::SetUp();
        window = makeWindow(QRect(100, 100, 300, 200), "Form");
        button = new QPushButton("OK", window);
        button->setGeometry(20, 20, 100, 30);
        button->show();
        QObject::connect(button, &QPushButton::clicked, [this] { ++clicks; });
        qttest::pump(20);
    }
};

TEST_F(QtInput, aMonitorSeesTheClickAndCanSwallowIt) {
    auto application = platform::sharedApplication();
    int presses = 0;
    auto token = application->addLocalMonitorForEvents(
        platform::eventMaskBit(platform::EventType::leftMouseDown), [&](std::shared_ptr<platform::Event>) {
            ++presses;
            return std::shared_ptr<platform::Event>();  // swallowed
        });
    onQueue([] { JTKTestSuite::element("OK").click(); });
    qttest::pump(50);
    application->removeMonitor(token);
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(clicks, 0);
}

TEST_F(QtInput, aCommandKeyReachesAControlShortcut) {
    int activations = 0;
    auto* shortcut = new QShortcut(QKeySequence(QStringLiteral("Ctrl+S")), window);
    QObject::connect(shortcut, &QShortcut::activated, [&] { ++activations; });
    onQueue([] { JTKTestSuite::typeKey("s", platform::eventFlags::command); });
    qttest::pump(50);
    EXPECT_EQ(activations, 1);
}

}  // namespace
