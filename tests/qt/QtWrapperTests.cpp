// The wrappers of widgets: what they answer by name, their values, the
// registry's identity rules and the application's window list.
#include <QComboBox>
#include <QGroupBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>

#include "JTK/platform/Application.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Window.h"
#include "QtFixture.h"
#include "QtTestWidgets.h"
#include "QtWrappers.h"

using namespace jtk;
using qttest::QtTest;

namespace {

struct NamedCase {
    const char* label;
    std::function<QWidget*(QWidget* parent)> make;
    std::string expectedClass;
    std::optional<std::string> expectedName;  // none: does not respond to hbViewName
};

class WrapperNames : public QtTest, public ::testing::WithParamInterface<NamedCase> {};

TEST_P(WrapperNames, classNameAndViewName) {
    auto* window = makeWindow(QRect(0, 0, 200, 100));
    auto view = qt::viewFor(GetParam().make(window));
    EXPECT_EQ(view->className(), GetParam().expectedClass);
    ASSERT_EQ(view->respondsToSelector("hbViewName"), GetParam().expectedName.has_value());
    if (GetParam().expectedName) {
        auto name = view->performSelector("hbViewName");
        ASSERT_TRUE(name.text());
        EXPECT_EQ(*name.text(), *GetParam().expectedName);
    }
}

QWidget* named(QWidget* widget, const char* objectName) {
    widget->setObjectName(QString::fromUtf8(objectName));
    return widget;
}

INSTANTIATE_TEST_SUITE_P(
    Qt, WrapperNames,
    ::testing::Values(
        NamedCase{"plainButton", [](QWidget* p) { return new QPushButton(p); }, "QPushButton", std::nullopt},
        NamedCase{"subclass", [](QWidget* p) { return new SaveButton(p); }, "SaveButton", std::nullopt},
        // Qt's own private class answers as the public class it derives from.
        NamedCase{"privateQtClass",
                  [](QWidget* p) -> QWidget* {
                      auto* dialog = new QInputDialog(p);
                      dialog->setInputMode(QInputDialog::IntInput);
                      auto* spin = dialog->findChild<QSpinBox*>();
                      EXPECT_STREQ(spin->metaObject()->className(), "QInputDialogSpinBox");
                      return spin;
                  },
                  "QSpinBox", std::nullopt},
        NamedCase{"invokable", [](QWidget* p) { return named(new InvokableNamedWidget(p), "object name"); },
                  "InvokableNamedWidget", "invokable name"},
        NamedCase{"property", [](QWidget* p) { return named(new PropertyNamedWidget(p), "object name"); },
                  "PropertyNamedWidget", "property name"},
        NamedCase{"dynamicProperty",
                  [](QWidget* p) {
                      auto* w = named(new QLabel(p), "object name");
                      w->setProperty("hbViewName", QStringLiteral("dynamic name"));
                      return w;
                  },
                  "QLabel", "dynamic name"},
        NamedCase{"objectName", [](QWidget* p) { return named(new QLineEdit(p), "emailField"); }, "QLineEdit",
                  "emailField"}),
    [](const auto& info) { return std::string(info.param.label); });

struct ValueCase {
    const char* label;
    std::function<QWidget*(QWidget* parent)> make;
    const char* selector;
    platform::Value expected;  // none: does not respond
};

class WrapperValues : public QtTest, public ::testing::WithParamInterface<ValueCase> {};

TEST_P(WrapperValues, answerTheirValues) {
    auto* window = makeWindow(QRect(0, 0, 200, 100), QStringLiteral("Doc[*]"));
    QWidget* widget = GetParam().make(window);
    auto view = qt::viewFor(widget ? widget : window);
    std::string selector = GetParam().selector;
    if (selector == "accessibilityValue") {
        EXPECT_EQ(view->accessibilityValue(), GetParam().expected);
        return;
    }
    ASSERT_EQ(view->respondsToSelector(selector), !GetParam().expected.isNone());
    EXPECT_EQ(view->performSelector(selector), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Qt, WrapperValues,
    ::testing::Values(
        ValueCase{"buttonTitleWithoutMnemonic", [](QWidget* p) { return new QPushButton("&Save && Close", p); },
                  "title", "Save & Close"},
        ValueCase{"groupTitle", [](QWidget* p) { return new QGroupBox("Options", p); }, "title", "Options"},
        ValueCase{"windowTitleWithoutPlaceholder", [](QWidget*) -> QWidget* { return nullptr; }, "title", "Doc"},
        ValueCase{"labelHasNoTitle", [](QWidget* p) { return new QLabel("text", p); }, "title", {}},
        ValueCase{"invokableValue", [](QWidget* p) { return new InvokableNamedWidget(p); }, "hbViewValue",
                  int64_t{42}},
        ValueCase{"fieldText", [](QWidget* p) { return new QLineEdit("typed", p); }, "accessibilityValue", "typed"},
        ValueCase{"labelText", [](QWidget* p) { return new QLabel("Total", p); }, "accessibilityValue", "Total"},
        ValueCase{"sliderNumber",
                  [](QWidget* p) {
                      auto* slider = new QSlider(p);
                      slider->setValue(7);
                      return slider;
                  },
                  "accessibilityValue", int64_t{7}},
        ValueCase{"spinNumber",
                  [](QWidget* p) {
                      auto* spin = new QSpinBox(p);
                      spin->setValue(3);
                      return spin;
                  },
                  "accessibilityValue", int64_t{3}},
        ValueCase{"comboText",
                  [](QWidget* p) {
                      auto* combo = new QComboBox(p);
                      combo->addItems({"Red", "Green"});
                      combo->setCurrentIndex(1);
                      return combo;
                  },
                  "accessibilityValue", "Green"},
        ValueCase{"buttonHasNone", [](QWidget* p) { return new QPushButton("OK", p); }, "accessibilityValue", {}}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(QtTest, aWrapperLivesAsLongAsItsWidget) {
    auto* window = makeWindow(QRect(0, 0, 200, 100));
    auto* button = new QPushButton("OK", window);
    std::weak_ptr<platform::View> weak = qt::viewFor(button);
    EXPECT_EQ(qt::viewFor(button), weak.lock()) << "one wrapper per widget";
    EXPECT_EQ(qt::widgetOf(*weak.lock()), button);
    delete button;
    EXPECT_TRUE(weak.expired());
    auto* next = new QPushButton("OK", window);
    auto view = qt::viewFor(next);
    EXPECT_EQ(qt::widgetOf(*view), next);
    EXPECT_EQ(view->window(), qt::windowFor(window));
}

TEST_F(QtTest, theWindowListIsInTheBackendsOrderWithoutClosedWindowsOrPopups) {
    auto* back = makeWindow(QRect(0, 0, 200, 100), "Back");
    auto* front = makeWindow(QRect(50, 50, 200, 100), "Front");
    auto* menu = new QWidget(nullptr, Qt::Popup);
    menu->show();
    auto titles = [] {
        std::vector<std::string> list;
        for (auto& window : platform::sharedApplication()->windows()) list.push_back(window->title());
        return list;
    };
    EXPECT_EQ(titles(), (std::vector<std::string>{"Front", "Back"}));
    qt::windowFor(back)->makeKeyAndOrderFront();
    qttest::pump(20);
    EXPECT_EQ(titles(), (std::vector<std::string>{"Back", "Front"}));
    EXPECT_EQ(platform::sharedApplication()->keyWindow(), qt::windowFor(back));
    int willClose = 0;
    auto observer = platform::defaultNotificationCenter().addObserver(
        platform::windowWillCloseNotification, platform::Value(qt::windowFor(front)),
        platform::DeliveryQueue::postingThread, [&](const platform::Notification&) { ++willClose; });
    qt::windowFor(front)->close();
    platform::defaultNotificationCenter().removeObserver(observer);
    EXPECT_EQ(willClose, 1);
    EXPECT_EQ(titles(), (std::vector<std::string>{"Back"}));
    EXPECT_TRUE(qt::windowFor(front)->contentView()->isHidden());
    qt::windowFor(front)->makeKeyAndOrderFront();
    EXPECT_EQ(titles(), (std::vector<std::string>{"Front", "Back"}));
    EXPECT_FALSE(qt::windowFor(front)->contentView()->isHidden());
}

TEST_F(QtTest, theFirstResponderIsTheFocusWidgetsView) {
    auto* window = makeWindow(QRect(0, 0, 200, 100));
    auto* field = new QLineEdit(window);
    field->show();
    field->setFocus();
    qttest::pump(10);
    EXPECT_EQ(qt::windowFor(window)->firstResponderObject(), qt::viewFor(field));
}

}  // namespace
