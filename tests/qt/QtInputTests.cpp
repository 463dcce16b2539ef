// Real input through the framework: clicks and typing posted from a test
// queue reach Qt's widgets as a person's would, while this thread runs Qt.
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "QtFixture.h"

using namespace jtk;
using qttest::QtTest;

namespace {

// Counts the events of one type a widget receives.
class EventCounter : public QObject {
public:
    EventCounter(QObject* watched, QEvent::Type type) : type_(type) { watched->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == type_) ++count;
        return false;
    }
    int count = 0;

private:
    QEvent::Type type_;
};

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

TEST_F(QtInput, aClickClicksTheButtonOnce) {
    onQueue([] { JTKTestSuite::element("OK").click(); });
    qttest::pump(50);
    EXPECT_EQ(clicks, 1);
}

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

struct ClickCase {
    const char* label;
    int pauseMilliseconds;  // between two single clicks; -1: one double click
    int doubleClicks;
};

class DoubleClicks : public QtInput, public ::testing::WithParamInterface<ClickCase> {};

TEST_P(DoubleClicks, comeOnlyFromADoubleClick) {
    EventCounter counter(button, QEvent::MouseButtonDblClick);
    int pause = GetParam().pauseMilliseconds;
    onQueue([pause] {
        auto ok = JTKTestSuite::element("OK");
        if (pause < 0) {
            ok.click({0, 0}, true);
            return;
        }
        ok.click();
        std::this_thread::sleep_for(std::chrono::milliseconds(pause));
        ok.click();
    });
    qttest::pump(50);
    EXPECT_EQ(counter.count, GetParam().doubleClicks);
}

INSTANTIATE_TEST_SUITE_P(Qt, DoubleClicks,
                         ::testing::Values(ClickCase{"doubleClick", -1, 1}, ClickCase{"twoClicksApart", 250, 0}),
                         [](const auto& info) { return std::string(info.param.label); });

TEST_F(QtInput, typedTextReachesTheFocusedFieldAndTabMovesOn) {
    auto* first = new QLineEdit(window);
    first->setGeometry(20, 60, 200, 24);
    first->setObjectName("first");
    auto* second = new QLineEdit(window);
    second->setGeometry(20, 100, 200, 24);
    first->show();
    second->show();
    QWidget::setTabOrder(first, second);
    onQueue([] {
        JTKTestSuite::element("first").click();
        JTKTestSuite::typeText("Café\tNo");
    });
    qttest::pump(50);
    EXPECT_EQ(first->text(), QStringLiteral("Café"));
    EXPECT_EQ(second->text(), QStringLiteral("No"));
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
