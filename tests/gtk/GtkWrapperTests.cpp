// What a GTK widget answers through its view: its class name (an
// application's type its own, a type GTK keeps to itself its public base),
// the name a search finds it by, its value, and the subviews a person sees.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <functional>

#include "GtkWrappers.h"

namespace {

using namespace jtk;

// An application's own button type, as a program registers one.
struct TestCalcButton {
    GtkButton parent;
};
struct TestCalcButtonClass {
    GtkButtonClass parentClass;
};
G_DEFINE_TYPE(TestCalcButton, test_calc_button, GTK_TYPE_BUTTON)
void test_calc_button_class_init(TestCalcButtonClass*) {}
void test_calc_button_init(TestCalcButton*) {}

// A widget made for a case, owned by the test until it ends.
class Owned {
public:
    // A new widget's floating reference becomes the test's; a widget that is
    // not floating (one a builder made) hands its reference over.
    explicit Owned(GtkWidget* widget)
        : widget_(g_object_is_floating(widget) ? GTK_WIDGET(g_object_ref_sink(widget)) : widget) {}
    ~Owned() { g_object_unref(widget_); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    GtkWidget* get() const { return widget_; }

private:
    GtkWidget* widget_;
};

struct WidgetCase {
    const char* label;
    std::function<GtkWidget*()> make;
    // The widget the case asks about: one of the made one's inner widgets (none: the made one).
    std::function<GtkWidget*(GtkWidget*)> inner;
    platform::Value expected;
    friend void PrintTo(const WidgetCase& c, std::ostream* out) { *out << c.label; }
};

std::string caseName(const testing::TestParamInfo<WidgetCase>& info) { return info.param.label; }

class ClassNames : public testing::TestWithParam<WidgetCase> {};

TEST_P(ClassNames, areTheGTypeNamesTestsCanName) {
    Owned made(GetParam().make());
    GtkWidget* asked = GetParam().inner ? GetParam().inner(made.get()) : made.get();
    EXPECT_EQ(platform::Value(gtk::viewFor(asked)->className()), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Gtk, ClassNames,
    testing::Values(
        WidgetCase{"toolkitType", [] { return gtk_button_new(); }, {}, "GtkButton"},
        WidgetCase{"applicationType", [] { return GTK_WIDGET(g_object_new(test_calc_button_get_type(), nullptr)); },
                   {}, "TestCalcButton"},
        WidgetCase{"publicInnerType", [] { return gtk_entry_new(); }, gtk_widget_get_first_child, "GtkText"},
        // The indicator of a check button is a type GTK does not export.
        WidgetCase{"privateTypeAnswersItsPublicBase", [] { return gtk_check_button_new(); },
                   gtk_widget_get_first_child, "GtkWidget"}),
    caseName);

class ViewNames : public testing::TestWithParam<WidgetCase> {};

TEST_P(ViewNames, fallFromTheBuildableIdToAWidgetNameOfItsOwn) {
    Owned made(GetParam().make());
    auto view = gtk::viewFor(made.get());
    EXPECT_EQ(view->respondsToSelector("hbViewName"), !GetParam().expected.isNone());
    EXPECT_EQ(view->performSelector("hbViewName"), GetParam().expected);
}

GtkWidget* builtButton(const char* ui) {
    GtkBuilder* builder = gtk_builder_new_from_string(ui, -1);
    GtkWidget* button = GTK_WIDGET(g_object_ref(gtk_builder_get_object(builder, "saveButton")));
    g_object_unref(builder);
    return button;
}

INSTANTIATE_TEST_SUITE_P(
    Gtk, ViewNames,
    testing::Values(
        WidgetCase{"buildableId",
                   [] {
                       return builtButton(
                           "<interface><object class='GtkButton' id='saveButton'><property name='name'>other"
                           "</property></object></interface>");
                   },
                   {}, "saveButton"},
        WidgetCase{"widgetName",
                   [] {
                       GtkWidget* button = gtk_button_new();
                       gtk_widget_set_name(button, "SaveButton");
                       return button;
                   },
                   {}, "SaveButton"},
        WidgetCase{"noneWhenTheNameIsTheTypeName", [] { return gtk_button_new(); }, {}, {}}),
    caseName);

class Values : public testing::TestWithParam<WidgetCase> {};

TEST_P(Values, areWhatAPersonReadsOfTheControl) {
    Owned made(GetParam().make());
    EXPECT_EQ(gtk::viewFor(made.get())->accessibilityValue(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Gtk, Values,
    testing::Values(
        WidgetCase{"label", [] { return gtk_label_new("Count: 3"); }, {}, "Count: 3"},
        WidgetCase{"entry",
                   [] {
                       GtkWidget* entry = gtk_entry_new();
                       gtk_editable_set_text(GTK_EDITABLE(entry), "L\u00f6we");
                       return entry;
                   },
                   {}, "L\u00f6we"},
        WidgetCase{"scale",
                   [] {
                       GtkWidget* scale = gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 100, 1);
                       gtk_range_set_value(GTK_RANGE(scale), 42);
                       return scale;
                   },
                   {}, int64_t{42}},
        WidgetCase{"spinButtonWithDigits",
                   [] {
                       GtkWidget* spin = gtk_spin_button_new_with_range(0, 10, 0.25);
                       gtk_spin_button_set_value(GTK_SPIN_BUTTON(spin), 2.75);
                       return spin;
                   },
                   {}, 2.75},
        WidgetCase{"checkedCheckButton",
                   [] {
                       GtkWidget* check = gtk_check_button_new_with_label("Remember me");
                       gtk_check_button_set_active(GTK_CHECK_BUTTON(check), TRUE);
                       return check;
                   },
                   {}, "1"},
        WidgetCase{"switchOff", [] { return gtk_switch_new(); }, {}, "0"},
        WidgetCase{"textView",
                   [] {
                       GtkWidget* view = gtk_text_view_new();
                       gtk_text_buffer_set_text(gtk_text_view_get_buffer(GTK_TEXT_VIEW(view)), "two\nlines", -1);
                       return view;
                   },
                   {}, "two\nlines"},
        WidgetCase{"buttonHasNone", [] { return gtk_button_new_with_label("Save"); }, {}, {}}),
    caseName);

TEST(GtkViews, aControlGtkLabelledItselfHasNoSubviewsAndAChildTheProgramSetIsOne) {
    Owned labelled(gtk_button_new_with_mnemonic("_Save"));
    EXPECT_TRUE(gtk::viewFor(labelled.get())->subviews().empty());
    EXPECT_EQ(gtk::viewFor(labelled.get())->performSelector("title"), platform::Value("Save"));
    Owned withChild(gtk_button_new());
    GtkWidget* icon = gtk_image_new_from_icon_name("document-save");
    gtk_button_set_child(GTK_BUTTON(withChild.get()), icon);
    EXPECT_THAT(gtk::viewFor(withChild.get())->subviews(), testing::ElementsAre(gtk::viewFor(icon)));
}

TEST(GtkViews, aViewOfADisposedWidgetFindsItGone) {
    GtkWidget* label = GTK_WIDGET(g_object_ref_sink(gtk_label_new("Late")));
    auto view = gtk::viewFor(label);
    g_object_unref(label);
    EXPECT_EQ(gtk::widgetOf(*view), nullptr);
    EXPECT_TRUE(view->isHidden());
    EXPECT_TRUE(view->accessibilityValue().isNone());
}

}  // namespace
