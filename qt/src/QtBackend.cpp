#include "JTK/qt/QtBackend.h"

#include <QApplication>
#include <QFont>
#include <QStyleFactory>
#include <QWidget>
#include <algorithm>

#include "JTK/platform/Process.h"
#include "QtApplication.h"
#include "QtMainQueue.h"
#include "QtScreens.h"
#include "QtWindowOrder.h"

namespace jtk::qt {

namespace {

bool runsUnderTest() {
    auto arguments = platform::processArguments();
    return std::find(arguments.begin(), arguments.end(), "uxtest") != arguments.end();
}

// The same pixels on every machine: one style, one font, a caret that does
// not blink. The fonts.conf of the resources pins the font files when
// FONTCONFIG_FILE names it before the application starts.
void makePicturesDeterministic(QApplication& application) {
    application.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(10);
    QApplication::setFont(font);
    QApplication::setCursorFlashTime(0);
}

}  // namespace

void installBackend(QApplication& application) {
    static bool installed = false;
    if (installed) return;
    installed = true;
    refreshScreens();
    installApplicationEventFilter();
    // Windows shown before now are in front of the others, in Qt's order.
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible()) bringToFront(widget);
    if (runsUnderTest()) makePicturesDeterministic(application);
    startMainQueue();
}

}  // namespace jtk::qt
