// Listings of every view the application-wide searches can see, in reading
// order, for choosing lookup strings while writing a test.
#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"
#include "JTK/JTKTestSuite.h"
#include "elements/JTKViewTexts.h"

namespace jtk {

namespace {

// One line per view of appViews; a view without the text prints an empty line,
// so the two listings correspond line by line.
template <class Text>
void printAllViews(Text text) {
    jtkOnMainThread([&] {
        for (const auto& view : JTKTestSuite::appViews()) jtkPrintLine(text(view));
    });
}

}  // namespace

void JTKTestSuite::printAllViewNames() { printAllViews(viewName); }

void JTKTestSuite::printAllViewTypes() { printAllViews(viewTypeName); }

}  // namespace jtk
