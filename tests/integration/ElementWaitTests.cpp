// Waiting for elements on a live application: the awaited view is added by
// the main thread while the test queue polls, as in a test run. (How often a
// wait searches is checked by the child-process scenarios of ElementStopTests.)
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

class ElementWait : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        content = makeWindow({0, 0, 400, 300})->desktopContentView();
        name(add<desktop::View>(content, Rect{10, 200, 80, 20}), "Late");  // the right name, but not a button
        platform::dispatchAfterMain(0.25, [this] { late = add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Late"); });
    }
    std::shared_ptr<desktop::View> content;
    std::shared_ptr<desktop::Button> late;
};

// Existence is asked once without waiting; element() waits (it is
// waitForExistence with one second) and honours the class.
TEST_F(ElementWait, existenceIsAskedOnceAndElementWaitsForAViewThatAppearsAfterTheFirstSearches) {
    bool exists = true;
    std::shared_ptr<platform::View> found;
    double seconds = 0;
    onQueue([&] {
        exists = JTKTestSuite::elementExists("Late", jtkClass<desktop::Button>());
        auto start = std::chrono::steady_clock::now();
        found = JTKTestSuite::element("Late", jtkClass<desktop::Button>()).view();
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    });
    EXPECT_FALSE(exists);
    EXPECT_EQ(found, late);
    EXPECT_GE(seconds, 0.3) << "searches at 0, 0.1 and 0.2 s find nothing";
}

}  // namespace
