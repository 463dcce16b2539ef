// The neutral tests' toolkit on the Qt backend: Qt's own widgets, placed in
// platform coordinates (y up) by flipping against the parent's height.
#include <QApplication>
#include <QCheckBox>
#include <QEventLoop>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QTimer>

#include <atomic>
#include <stdexcept>
#include <map>

#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "JTK/qt/QtBackend.h"
#include "QtWrappers.h"
#include "tests/neutral/NeutralUi.h"

namespace neutral {

namespace {

using namespace jtk;

// A QFrame underneath, so that the framework sees a class of its own in the window.
class PressRecorder : public QFrame {
public:
    using QFrame::QFrame;
    std::vector<Press> presses;

protected:
    void mousePressEvent(QMouseEvent*) override { pending_ = 1; }
    void mouseDoubleClickEvent(QMouseEvent*) override { pending_ = 2; }
    void mouseReleaseEvent(QMouseEvent* event) override {
        presses.push_back({pending_, platformFlags(event->modifiers())});
    }

private:
    static uint64_t platformFlags(Qt::KeyboardModifiers modifiers) {
        uint64_t flags = 0;
        if (modifiers & Qt::ShiftModifier) flags |= platform::eventFlags::shift;
        if (modifiers & Qt::ControlModifier) flags |= platform::eventFlags::command;
        if (modifiers & Qt::MetaModifier) flags |= platform::eventFlags::control;
        if (modifiers & Qt::AltModifier) flags |= platform::eventFlags::alternate;
        return flags;
    }
    int pending_ = 0;
};

std::vector<QPointer<QWidget>>& windowsMade() {
    static std::vector<QPointer<QWidget>> windows;
    return windows;
}

std::map<const QWidget*, int>& actionCounts() {
    static std::map<const QWidget*, int> counts;
    return counts;
}

template <class W>
W& widget(const ViewPtr& view) {
    auto* found = qobject_cast<W*>(jtk::qt::widgetOf(*view));
    if (!found) throw std::logic_error("the view is not the widget the test made");
    return *found;
}

}  // namespace

void closeAllWindows() {
    for (auto& window : windowsMade()) delete window.data();
    windowsMade().clear();
    actionCounts().clear();
}

std::shared_ptr<platform::Window> makeWindow(const Rect& content, const std::string& title) {
    auto* window = new QWidget;
    window->setWindowTitle(QString::fromStdString(title));
    int screenHeight = QGuiApplication::primaryScreen()->geometry().height();
    window->setGeometry(int(content.minX()), screenHeight - int(content.maxY()), int(content.width()),
                        int(content.height()));
    windowsMade().push_back(window);
    auto platformWindow = jtk::qt::windowFor(window);
    platformWindow->makeKeyAndOrderFront();
    return platformWindow;
}

ViewPtr add(Kind kind, const ViewPtr& parent, const Rect& frame, const std::string& text) {
    QWidget* parentWidget = jtk::qt::widgetOf(*parent);
    QString qtext = QString::fromStdString(text);
    QWidget* made = nullptr;
    switch (kind) {
        case Kind::button: {
            auto* button = new QPushButton(qtext, parentWidget);
            QObject::connect(button, &QPushButton::clicked, [button] { ++actionCounts()[button]; });
            made = button;
            break;
        }
        case Kind::checkbox: made = new QCheckBox(qtext, parentWidget); break;
        case Kind::label: made = new QLabel(qtext, parentWidget); break;
        case Kind::textField: made = new QLineEdit(qtext, parentWidget); break;
        case Kind::slider: {
            auto* slider = new QSlider(Qt::Horizontal, parentWidget);
            slider->setRange(0, 100);
            made = slider;
            break;
        }
        case Kind::pressRecorder: made = new PressRecorder(parentWidget); break;
    }
    made->setGeometry(int(frame.minX()), parentWidget->height() - int(frame.maxY()), int(frame.width()),
                      int(frame.height()));
    made->show();
    return jtk::qt::viewFor(made);
}

std::string className(Kind kind) {
    switch (kind) {
        case Kind::button: return "QPushButton";
        case Kind::checkbox: return "QCheckBox";
        case Kind::label: return "QLabel";
        case Kind::textField: return "QLineEdit";
        case Kind::slider: return "QSlider";
        case Kind::pressRecorder: return "QFrame";
    }
    return {};
}

void setName(const ViewPtr& view, const std::string& name) {
    jtk::qt::widgetOf(*view)->setProperty("hbViewName", QString::fromStdString(name));
}

void setHidden(const ViewPtr& view, bool hidden) { jtk::qt::widgetOf(*view)->setHidden(hidden); }

void destroy(ViewPtr& view) {
    delete jtk::qt::widgetOf(*view);
    view.reset();
}

int actionCount(const ViewPtr& button) { return actionCounts()[jtk::qt::widgetOf(*button)]; }
std::string text(const ViewPtr& textField) { return widget<QLineEdit>(textField).text().toStdString(); }
double sliderValue(const ViewPtr& slider) { return widget<QSlider>(slider).value(); }
std::vector<Press> presses(const ViewPtr& recorder) {
    return dynamic_cast<PressRecorder&>(*jtk::qt::widgetOf(*recorder)).presses;
}

void onQueue(const std::function<void()>& body) {
    std::atomic<bool> finished{false};
    auto queue = platform::makeSerialQueue("NeutralTestQueue");
    queue->async([&] {
        body();
        finished = true;
    });
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (finished) loop.quit();
    });
    poll.start(5);
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    loop.exec();
    if (!finished) throw std::runtime_error("the body on the queue did not finish within 60 s");
}

int runOnToolkit(int& argc, char** argv, const std::function<int()>& body) {
    // Headless unless the person running the program asks for a display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    jtk::qt::installBackend(application);
    int status = body();
    closeAllWindows();
    return status;
}

}  // namespace neutral
