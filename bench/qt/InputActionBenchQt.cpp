// The input-action benchmarks of InputActionBench on the same scene built
// with Qt widgets: a plain widget and a combo box in a window, on Qt's
// offscreen platform unless QT_QPA_PLATFORM names another.
// InputActionBench runs this program in its own run and divides its figures
// by its own.
#include <QApplication>
#include <QComboBox>
#include <QEventLoop>
#include <QWidget>

#include "JTK/qt/QtBackend.h"
#include "JTK/services/ProcessInfo.h"
#include "common/ActionBenchmarks.h"
#include "qt/QtBenchApplication.h"

using namespace jtk;

void bench::buildActionScene() {
    static QWidget* window = [] {
        auto* made = new QWidget;
        made->setWindowTitle(QStringLiteral("Bench"));
        made->setGeometry(100, 100, 600, 400);
        auto* plain = new QWidget(made);
        plain->setGeometry(20, 180, 300, 200);
        plain->setProperty("hbViewName", QStringLiteral("BenchPlain"));
        auto* popUp = new QComboBox(made);
        popUp->addItems({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
        popUp->setGeometry(350, 76, 120, 24);
        popUp->setProperty("hbViewName", QStringLiteral("BenchPopUp"));
        // As the embedded desktop's pop-up button, it takes no keyboard focus:
        // the typing benchmark's space would otherwise open its list, and the
        // next benchmark's click would close it instead of opening it.
        popUp->setFocusPolicy(Qt::NoFocus);
        made->show();
        made->activateWindow();
        return made;
    }();
    (void)window;
}

void bench::runMainLoopUntil(const std::function<bool()>& finished) {
    while (!finished()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

int main(int argc, char** argv) {
    bench::prepareQtEnvironment();
    QApplication app(argc, argv);
    services::setProcessArguments(argc, argv);
    qt::installBackend(app);
    benchmark::Initialize(&argc, argv);
    bench::ActionReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
