// The backend's XTest input on real GTK widgets: typed text reaches a
// GtkEntry whole, by the batch and one key event at a time (digits,
// capitals, accents, emoji, more characters than there are spare keys); the
// wheel scrolls; and the monitors see what GTK delivered with the fields
// the recorder reads (click counts, key codes, flags, typed text).
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <ostream>
#include <stdexcept>

#include "GtkX11.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Process.h"
#include "input/JTKKeyboard.h"
#include "tests/gtk/GtkTestLoop.h"

using namespace jtk;
using platform::EventType;

namespace {

using gtktest::onQueue;

void post(EventType type, platform::Point location, int64_t clickState = 1) {
    platform::Event event;
    event.type = type;
    event.location = location;
    event.clickState = clickState;
    platform::postEvent(platform::EventTap::hid, event);
}

// One key stroke as single events: the press with the stroke's flags, then the release.
void postStroke(const platform::KeyStroke& stroke) {
    platform::Event event;
    event.keyCode = stroke.keyCode;
    event.unicodeText = stroke.unicodeText;
    for (EventType type : {EventType::keyDown, EventType::keyUp}) {
        event.type = type;
        event.flags = type == EventType::keyDown ? stroke.flags : 0;
        platform::postEventToPid(platform::processIdentifier(), event);
        platform::settleInput();
    }
}

// A window with an entry (focused) above a scrolled area taller than its view.
class GtkInput : public ::testing::Test {
protected:
    void SetUp() override {
        window = gtk_window_new();
        GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
        entry = gtk_entry_new();
        scrolled = gtk_scrolled_window_new();
        GtkWidget* tall = gtk_drawing_area_new();
        gtk_widget_set_size_request(tall, 200, 2000);
        gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled), tall);
        gtk_widget_set_size_request(scrolled, 300, 150);
        gtk_box_append(GTK_BOX(box), entry);
        gtk_box_append(GTK_BOX(box), scrolled);
        gtk_window_set_child(GTK_WINDOW(window), box);
        gtk_window_present(GTK_WINDOW(window));
        gtk_widget_grab_focus(entry);
        // Active, and laid out (GTK lays out on its frame clock).
        auto ready = [&] { return gtk_window_is_active(GTK_WINDOW(window)) && gtk_widget_get_height(scrolled) > 0; };
        auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!ready() && std::chrono::steady_clock::now() < deadline) g_main_context_iteration(nullptr, FALSE);
        ASSERT_TRUE(ready());
    }
    void TearDown() override {
        gtk_window_destroy(GTK_WINDOW(window));
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
    }

    // A widget's centre on the root window (global, y down).
    platform::Point centreOf(GtkWidget* widget) const {
        graphene_rect_t bounds;
        if (!gtk_widget_compute_bounds(widget, window, &bounds)) throw std::logic_error("no bounds");
        double dx = 0, dy = 0;
        gtk_native_get_surface_transform(GTK_NATIVE(window), &dx, &dy);
        auto origin = gtk::rootPositionOf(window).value_or(platform::Point{});
        return {std::round(origin.x + dx + bounds.origin.x + bounds.size.width / 2),
                std::round(origin.y + dy + bounds.origin.y + bounds.size.height / 2)};
    }

    GtkWidget* window = nullptr;
    GtkWidget* entry = nullptr;
    GtkWidget* scrolled = nullptr;
};

enum class Path { batch, oneEventAtATime };
void PrintTo(Path path, std::ostream* out) { *out << (path == Path::batch ? "batch" : "oneEventAtATime"); }

struct TypingCase {
    const char* label;
    std::string text;
    friend void PrintTo(const TypingCase& c, std::ostream* out) { *out << c.label; }
};

class Typing : public GtkInput, public ::testing::WithParamInterface<std::tuple<TypingCase, Path>> {};

TEST_P(Typing, putsTheWholeTextIntoTheEntry) {
    auto [typing, path] = GetParam();
    onQueue([&] {
        if (path == Path::batch) {
            JTKTestSuite::typeText(typing.text);
        } else {
            for (const auto& character : jtkCharacters(typing.text)) postStroke(jtkKeyStrokeForCharacter(character));
        }
    });
    EXPECT_EQ(gtk_editable_get_text(GTK_EDITABLE(entry)), typing.text);
}

INSTANTIATE_TEST_SUITE_P(
    Gtk, Typing,
    ::testing::Combine(
        ::testing::Values(TypingCase{"digits", "0123456789"}, TypingCase{"capitals", "Hello World"},
                          TypingCase{"punctuation", "a@b.c, (1+2)=3!"},
                          TypingCase{"accents", "d\u00e9j\u00e0 vu, M\u00fcller"},
                          TypingCase{"emoji", "\U0001F600 \U0001F44D\U0001F3FD"},
                          // 34 symbols without a key: more than the spare key codes at once
                          TypingCase{"manySymbols", "\u03b1\u03b2\u03b3\u03b4\u03b5\u03b6\u03b7\u03b8\u03b9\u03ba\u03bb"
                                                    "\u03bc\u03bd\u03be\u03bf\u03c0\u03c1\u03c3\u03c4\u03c5\u03c6\u03c7"
                                                    "\u03c8\u03c9\u0430\u0431\u0432\u0433\u0434\u0435\u0436\u0437"
                                                    "\u0438\u0439\u03b1"}),
        ::testing::Values(Path::batch, Path::oneEventAtATime)),
    [](const auto& info) {
        return std::string(std::get<0>(info.param).label) +
               (std::get<1>(info.param) == Path::batch ? "_batch" : "_oneEventAtATime");
    });

TEST_F(GtkInput, theWheelScrollsDownForANegativeDelta) {
    GtkAdjustment* adjustment = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scrolled));
    platform::Point centre = centreOf(scrolled);
    onQueue([&] {
        platform::Event wheel;
        wheel.type = EventType::scrollWheel;
        wheel.location = centre;
        wheel.scrollDeltaY = -3;
        platform::postEvent(platform::EventTap::hid, wheel);
        platform::settleInput();
    });
    // GTK animates the scrolling over its next frames.
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (gtk_adjustment_get_value(adjustment) == 0 && std::chrono::steady_clock::now() < deadline)
        g_main_context_iteration(nullptr, FALSE);
    EXPECT_GT(gtk_adjustment_get_value(adjustment), 0);
}

TEST_F(GtkInput, monitorsSeeClicksWithTheirCountsAndKeysWithTheirCodeFlagsAndText) {
    std::vector<platform::Event> seen;
    uint64_t mask = platform::eventMaskBit(EventType::leftMouseDown) | platform::eventMaskBit(EventType::keyDown) |
                    platform::eventMaskBit(EventType::flagsChanged) | platform::eventMaskBit(EventType::scrollWheel);
    auto application = platform::sharedApplication();
    uint64_t monitor = application->addLocalMonitorForEvents(mask, [&](std::shared_ptr<platform::Event> event) {
        seen.push_back(*event);
        return event;
    });
    platform::Point centre = centreOf(entry);
    onQueue([&] {
        // A double click: both presses carry click state 2.
        for (int press = 0; press < 2; ++press) {
            post(EventType::leftMouseDown, centre, 2);
            post(EventType::leftMouseUp, centre, 2);
        }
        postStroke({0, platform::eventFlags::shift, {}});
        postStroke({platform::noKeyCode, 0, "\u00e9"});
        postStroke({36, platform::eventFlags::command, {}});
    });
    application->removeMonitor(monitor);
    using Seen = std::tuple<EventType, int64_t, uint16_t, uint64_t, std::string>;
    std::vector<Seen> fields;
    for (const auto& event : seen) {
        fields.emplace_back(event.type, event.clickState, event.keyCode, event.flags, event.unicodeText);
        if (event.type == EventType::leftMouseDown) {
            EXPECT_EQ(event.location, centre);
        }
    }
    namespace flags = platform::eventFlags;
    EXPECT_EQ(fields, (std::vector<Seen>{{EventType::leftMouseDown, 1, 0, 0, ""},
                                         {EventType::leftMouseDown, 2, 0, 0, ""},
                                         {EventType::flagsChanged, 0, platform::noKeyCode, flags::shift, ""},
                                         {EventType::keyDown, 0, 0, flags::shift, "A"},
                                         {EventType::flagsChanged, 0, platform::noKeyCode, 0, ""},
                                         {EventType::keyDown, 0, platform::noKeyCode, 0, "\u00e9"},
                                         {EventType::flagsChanged, 0, platform::noKeyCode, flags::command, ""},
                                         {EventType::keyDown, 0, 36, flags::command, ""},
                                         {EventType::flagsChanged, 0, platform::noKeyCode, 0, ""}}));
}

}  // namespace
