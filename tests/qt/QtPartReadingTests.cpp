// What a test reads from parts and widgets: a shown tool tip as a window
// of its own, and the reading order of cells and sections.
#include <QHeaderView>
#include <QMainWindow>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>
#include <chrono>
#include <thread>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Events.h"
#include "QtFixture.h"

using namespace jtk;
using qttest::QtTest;

namespace {

// A person rests the pointer on the point (Qt's global coordinates).
void hover(QPoint global) {
    auto source = platform::createEventSource(platform::EventSourceState::hidSystemState);
    for (QPoint point : {global - QPoint(3, 3), global}) {
        auto moved = platform::createMouseEvent(source, platform::EventType::mouseMoved,
                                                {double(point.x()), double(point.y())}, platform::MouseButton::left);
        platform::postEvent(platform::EventTap::hid, *moved);
    }
}

TEST_F(QtTest, aShownToolTipIsAWindowFoundByTheTextItShows) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 300, 200), "Tips");
    auto* save = new QPushButton("Save");
    save->setToolTip("<b>Writes</b> the file");
    window->setCentralWidget(new QWidget);
    save->setParent(window->centralWidget());
    save->setGeometry(20, 20, 100, 30);
    qttest::pump(30);
    QPoint centre = save->mapToGlobal(save->rect().center());
    std::string typeName;
    size_t windows = 0, windowsBefore = 0, windowsAfterClick = 0;
    onQueue([&] {
        windowsBefore = JTKTestSuite::appWindows().size();
        // A click presses where it moves the pointer: the pointer does not rest.
        JTKTestSuite::element("Save").click();
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        windowsAfterClick = JTKTestSuite::appWindows().size();
        hover(centre);
        typeName = JTKTestSuite::waitForExistence("Writes the file", {.timeout = 5}).typeName();
        windows = JTKTestSuite::appWindows().size();
    });
    EXPECT_EQ(windowsAfterClick, windowsBefore) << "no tool tip after a click";
    EXPECT_EQ(typeName, "QLabel");
    EXPECT_EQ(windows, windowsBefore + 1) << "the tool tip is a window while shown";
}

TEST_F(QtTest, cellsAndSectionsAreInReadingOrderAndAClassLookupFindsOnlyTheView) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 400, 300), "Table");
    auto* model = new QStandardItemModel(2, 2, window);
    model->setHorizontalHeaderLabels({"Name", "Size"});
    for (int cell = 0; cell < 4; ++cell)
        model->setItem(cell / 2, cell % 2, new QStandardItem(QString("%1%2").arg(QChar('a' + cell % 2)).arg(cell / 2 + 1)));
    auto* table = new QTableView;
    table->setModel(model);
    table->verticalHeader()->hide();  // and with it its sections
    window->setCentralWidget(table);
    qttest::pump(30);
    std::vector<std::string> cells, sections;
    size_t tables = 0;
    onQueue([&] {
        for (auto& cell : JTKTestSuite::elements("QModelIndex")) cells.push_back(cell.value());
        for (auto& section : JTKTestSuite::elements("QHeaderViewSection")) sections.push_back(section.value());
        tables = JTKTestSuite::elements("QTableView").size();
    });
    EXPECT_EQ(cells, (std::vector<std::string>{"a1", "b1", "a2", "b2"}));
    EXPECT_EQ(sections, (std::vector<std::string>{"Name", "Size"}));
    EXPECT_EQ(tables, 1u);
}

}  // namespace
