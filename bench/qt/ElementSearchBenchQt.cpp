// The search benchmarks of ElementSearchBench over the same tree built with
// Qt widgets: windows of 100 widgets (a content widget and nine boxes of ten
// leaves, named by a dynamic hbViewName property), on Qt's offscreen
// platform unless QT_QPA_PLATFORM names another. ElementSearchBench runs
// this program in its own run and divides its figures by its own.
#include <QApplication>
#include <QEventLoop>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "JTK/qt/QtBackend.h"
#include "JTK/services/ProcessInfo.h"
#include "common/SearchBenchmarks.h"
#include "qt/QtBenchApplication.h"
#include "run/JTKMainThread.h"

using namespace jtk;

namespace {

class QtSearchTree : public bench::SearchTree {
public:
    explicit QtSearchTree(int viewCount) {
        jtkOnMainThread([&] {
            QWidget* lastLeaf = nullptr;
            for (int made = 0; made < viewCount;) {
                int index = static_cast<int>(windows_.size());
                auto window = std::make_unique<QWidget>();
                window->setWindowTitle(QStringLiteral("Bench %1").arg(index));
                window->setGeometry(40 + index, 60 + index, 800, 700);
                ++made;
                for (int group = 0; made < viewCount && group < bench::groupsPerWindow; ++group) {
                    auto* box = new QWidget(window.get());
                    box->setGeometry(10 + 85 * group, 20, 80, 660);
                    ++made;
                    for (int leaf = 0; made < viewCount && leaf < bench::leavesPerGroup; ++leaf, ++made) {
                        lastLeaf = new QWidget(box);
                        lastLeaf->setGeometry(5, 5 + 64 * leaf, 70, 20);
                        lastLeaf->setProperty("hbViewName", QStringLiteral("item%1").arg(made % 7));
                    }
                }
                window->show();
                windows_.push_back(std::move(window));
            }
            if (lastLeaf) lastLeaf->setProperty("hbViewName", QStringLiteral("target"));
        });
    }

    ~QtSearchTree() override {
        jtkOnMainThread([&] { windows_.clear(); });
    }

private:
    std::vector<std::unique_ptr<QWidget>> windows_;
};

}  // namespace

std::unique_ptr<bench::SearchTree> bench::makeSearchTree(int viewCount) {
    return std::make_unique<QtSearchTree>(viewCount);
}

int main(int argc, char** argv) {
    bench::prepareQtEnvironment();
    QApplication app(argc, argv);
    services::setProcessArguments(argc, argv);
    qt::installBackend(app);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    bench::SearchReporter reporter;
    bench::runOnBenchQueue(reporter, [](const std::function<bool()>& finished) {
        while (!finished()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    });
    bench::printWalkRatios(reporter.times());
    benchmark::Shutdown();
    return 0;
}
