#include "JTK/qt/QtBackend.h"

#include <QApplication>
#include <QFont>
#include <QStyleFactory>
#include <QWidget>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "JTK/platform/Process.h"
#include "JTK/platform/UserDefaults.h"
#include "JTK/services/BackendHooks.h"
#include "JTK/services/Resources.h"
#include "QtApplication.h"
#include "QtMainQueue.h"
#include "QtScreens.h"
#include "QtWindowOrder.h"

namespace jtk::qt {

namespace {

bool runsUnderTest() { return platform::argumentsRequestTesting(platform::processArguments()); }

// The same pixels on every machine: one style, one font, a caret that does
// not blink. The fonts.conf of the resources pins the font files when
// FONTCONFIG_FILE names it before the application starts.
void makePicturesDeterministic(QApplication& application) {
    application.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    setTestFont();
    QApplication::setCursorFlashTime(0);
}

std::optional<std::filesystem::path> fontConfigurationFile() {
    const std::filesystem::path file = "fonts/fonts.conf";
    auto folder = services::resourceFolderHolding(file);
    return folder ? std::optional(*folder / file) : std::nullopt;
}

}  // namespace

const char* prepareFontConfiguration() {
    static std::string chosen;
    if (!chosen.empty() || !runsUnderTest()) return chosen.c_str();
    // Text and the Fusion style's metrics scale with the screen's logical
    // DPI, which Qt 5 takes from the platform (its headless screen's 100, an
    // X server's physical DPI or Xft.dpi): 96 for every one, as Qt 6 has it,
    // so that a program gives the same pictures headless and on any display.
    // Qt reads it once, when it makes its first screen; a value the
    // environment already gives is kept.
    setenv("QT_FONT_DPI", "96", 0);
    if (const char* existing = std::getenv("FONTCONFIG_FILE"); existing && *existing) return existing;
    auto file = fontConfigurationFile();
    if (!file) {
        platform::systemLog("JTK Qt: no fonts/fonts.conf found (set JTK_RESOURCES_DIR); pictures use the system's fonts");
        return chosen.c_str();
    }
    chosen = file->string();
    setenv("FONTCONFIG_FILE", chosen.c_str(), 0);
    return chosen.c_str();
}

void setTestFont() {
    // Only on a QApplication: a program whose application object is not one
    // is refused later, and fonts belong to the GUI.
    if (!runsUnderTest() || !qobject_cast<QApplication*>(QCoreApplication::instance())) return;
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(10);
    QApplication::setFont(font);
}

void installBackend(QApplication& application) {
    static bool installed = false;
    if (installed) return;
    installed = true;
    services::installBackendHooks({
        .dispatchAsyncMain = enqueueOnMain,
        .resetStandardUserDefaults = platform::resetStandardUserDefaults,
    });
    refreshScreens();
    installApplicationEventFilter();
    // Windows shown before now are in front of the others, in Qt's order.
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible()) bringToFront(widget);
    if (runsUnderTest()) {
        prepareFontConfiguration();
        makePicturesDeterministic(application);
    }
    startMainQueue();
}

}  // namespace jtk::qt
