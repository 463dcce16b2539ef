// The search benchmarks of ElementSearchBench over the same tree built with
// GTK 4 widgets: windows of 100 widgets (a GtkFixed as content, nine GtkFixed
// boxes of ten GtkBox leaves, named by their widget names) on an X server.
// ElementSearchBench runs this program in its own run (on an Xvfb of its
// own unless DISPLAY names a display) and divides its figures by its own.
#include <memory>
#include <string>
#include <vector>

#include "common/SearchBenchmarks.h"
#include "gtk/GtkBenchApplication.h"
#include "run/JTKMainThread.h"

using namespace jtk;

namespace {

GtkWidget* placed(GtkWidget* parent, GtkWidget* child, int x, int y, int width, int height) {
    gtk_widget_set_size_request(child, width, height);
    gtk_fixed_put(GTK_FIXED(parent), child, x, y);
    return child;
}

class GtkSearchTree : public bench::SearchTree {
public:
    explicit GtkSearchTree(int viewCount) {
        jtkOnMainThread([&] {
            GtkWidget* lastLeaf = nullptr;
            for (int made = 0; made < viewCount;) {
                auto* window = GTK_WINDOW(gtk_window_new());
                gtk_window_set_title(window, ("Bench " + std::to_string(windows_.size())).c_str());
                GtkWidget* content = gtk_fixed_new();
                gtk_widget_set_size_request(content, 800, 700);
                gtk_window_set_child(window, content);
                ++made;
                for (int group = 0; made < viewCount && group < bench::groupsPerWindow; ++group) {
                    GtkWidget* box = placed(content, gtk_fixed_new(), 10 + 85 * group, 20, 80, 660);
                    ++made;
                    for (int leaf = 0; made < viewCount && leaf < bench::leavesPerGroup; ++leaf, ++made) {
                        lastLeaf = placed(box, gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0), 5, 5 + 64 * leaf, 70, 20);
                        gtk_widget_set_name(lastLeaf, ("item" + std::to_string(made % 7)).c_str());
                    }
                }
                gtk_window_present(window);
                windows_.push_back(window);
            }
            if (lastLeaf) gtk_widget_set_name(lastLeaf, "target");
        });
    }

    ~GtkSearchTree() override {
        jtkOnMainThread([&] {
            for (GtkWindow* window : windows_) gtk_window_destroy(window);
            windows_.clear();
        });
    }

private:
    std::vector<GtkWindow*> windows_;
};

}  // namespace

std::unique_ptr<bench::SearchTree> bench::makeSearchTree(int viewCount) {
    return std::make_unique<GtkSearchTree>(viewCount);
}

int main(int argc, char** argv) {
    if (!bench::startGtk(argc, argv)) return 1;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    bench::SearchReporter reporter;
    bench::runOnBenchQueue(reporter, bench::runGtkUntil);
    bench::printWalkRatios(reporter.times());
    benchmark::Shutdown();
    return 0;
}
