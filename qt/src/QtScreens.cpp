#include "QtScreens.h"

#include <QGuiApplication>
#include <QScreen>
#include <mutex>
#include <vector>

#include "JTK/platform/Screen.h"
#include "QtMainQueue.h"

namespace jtk::qt {

namespace {

struct ScreenSnapshot {
    std::mutex mutex;
    std::vector<QRect> geometries;  // Qt's global coordinates, the primary screen first
    bool following = false;
};

ScreenSnapshot& snapshot() {
    static auto* screens = new ScreenSnapshot;  // never destroyed: read from any thread
    return *screens;
}

void followScreen(QScreen* screen) {
    QObject::connect(screen, &QScreen::geometryChanged, qApp, [] { refreshScreens(); });
}

}  // namespace

void refreshScreens() {
    std::vector<QRect> geometries;
    if (QScreen* primary = QGuiApplication::primaryScreen()) geometries.push_back(primary->geometry());
    for (QScreen* screen : QGuiApplication::screens())
        if (screen != QGuiApplication::primaryScreen()) geometries.push_back(screen->geometry());
    bool follow = false;
    {
        auto& screens = snapshot();
        std::lock_guard lock(screens.mutex);
        screens.geometries = std::move(geometries);
        follow = !screens.following && qApp;
        if (follow) screens.following = true;
    }
    if (!follow) return;
    for (QScreen* screen : QGuiApplication::screens()) followScreen(screen);
    QObject::connect(qApp, &QGuiApplication::screenAdded, qApp, [](QScreen* screen) {
        followScreen(screen);
        refreshScreens();
    });
    QObject::connect(qApp, &QGuiApplication::screenRemoved, qApp, [] { refreshScreens(); });
    QObject::connect(qApp, &QGuiApplication::primaryScreenChanged, qApp, [] { refreshScreens(); });
}

double mainScreenHeight() {
    auto& screens = snapshot();
    std::lock_guard lock(screens.mutex);
    return screens.geometries.empty() ? 0.0 : screens.geometries.front().height();
}

platform::Rect screenRectFromGlobal(const QRectF& global) {
    double height = mainScreenHeight();
    return {global.x(), height - (global.y() + global.height()), global.width(), global.height()};
}

platform::Point screenPointFromGlobal(platform::Point global) { return {global.x, mainScreenHeight() - global.y}; }

platform::Point globalPointFromScreen(platform::Point screen) { return {screen.x, mainScreenHeight() - screen.y}; }

}  // namespace jtk::qt

namespace jtk::platform {

std::vector<Screen> screens() {
    std::vector<QRect> geometries;
    {
        auto& screens = qt::snapshot();
        std::lock_guard lock(screens.mutex);
        geometries = screens.geometries;
    }
    // Asked on the GUI thread before the backend was installed: read them now.
    if (geometries.empty() && qApp && qt::onGuiThread()) {
        qt::refreshScreens();
        auto& screens = qt::snapshot();
        std::lock_guard lock(screens.mutex);
        geometries = screens.geometries;
    }
    std::vector<Screen> result;
    double height = geometries.empty() ? 0.0 : geometries.front().height();
    for (const QRect& g : geometries)
        result.push_back(Screen{Rect(g.x(), height - (g.y() + g.height()), g.width(), g.height())});
    return result;
}

}  // namespace jtk::platform
