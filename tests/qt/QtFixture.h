// The fixture of the Qt backend's tests: the test thread is the GUI thread;
// a body may run on a serial queue, as in a test run, while this thread runs
// Qt's loop. Every test starts and ends with no top-level widget.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>
#include <atomic>
#include <functional>
#include <memory>

#include "JTK/platform/Dispatch.h"

namespace qttest {

inline void pump(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    do {
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    } while (timer.elapsed() < milliseconds);
}

// Services Qt's loop until the condition holds (at most 10 s).
inline bool waitFor(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > 10000) return false;
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

class QtTest : public ::testing::Test {
protected:
    void SetUp() override { closeAll(); }
    void TearDown() override { closeAll(); }

    static void closeAll() {
        // A window deletes the pop-ups and dialogs it owns, which are top-level widgets too.
        QList<QPointer<QWidget>> topLevels;
        for (QWidget* widget : QApplication::topLevelWidgets()) topLevels.append(widget);
        for (const auto& widget : topLevels) delete widget.data();
        pump(10);
    }

    // A shown top-level widget of that geometry, owned by the test (deleted by closeAll).
    template <class W = QWidget>
    static W* makeWindow(QRect geometry, const QString& title = QStringLiteral("Window")) {
        auto* window = new W;
        window->setWindowTitle(title);
        window->setGeometry(geometry);
        window->show();
        window->activateWindow();
        pump(20);
        return window;
    }

    // Runs body on a serial queue while this thread runs Qt's loop.
    static void onQueue(const std::function<void()>& body) {
        std::atomic<bool> finished{false};
        auto queue = jtk::platform::makeSerialQueue("QtTestBody");
        queue->async([&] {
            body();
            finished = true;
        });
        ASSERT_TRUE(waitFor([&] { return finished.load(); })) << "the test body did not finish within 10 s";
        queue.reset();
    }
};

}  // namespace qttest
