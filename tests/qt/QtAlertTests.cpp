// An alert's modal loop answers by the button pressed, and a repeating
// common-modes timer keeps firing inside it (it is how a run's last alert is
// answered).
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

#include "JTK/platform/Alert.h"
#include "JTK/platform/RunLoop.h"

namespace {

class QtAlertTest : public ::testing::TestWithParam<int> {};

TEST_P(QtAlertTest, runModalAnswersByButtonWhileATimerFires) {
    const int buttonIndex = GetParam();
    auto alert = jtk::platform::makeAlert();
    alert->setMessageText("Message");
    alert->addButtonWithTitle("First");
    alert->addButtonWithTitle("Second");
    alert->addButtonWithTitle("Third");
    int fired = 0;
    auto timer = jtk::platform::scheduleTimer(0.01, true, [&](jtk::platform::Timer& self) {
        ++fired;
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || fired < 3) return;
        for (QAbstractButton* button : box->buttons())
            if (button->text() == QStringList{"First", "Second", "Third"}[buttonIndex]) button->click();
        self.invalidate();
    }, true);
    EXPECT_EQ(alert->runModal(), 1000 + buttonIndex);
    EXPECT_GE(fired, 3);
}

INSTANTIATE_TEST_SUITE_P(Buttons, QtAlertTest, ::testing::Values(0, 1, 2));

}  // namespace
