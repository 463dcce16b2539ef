// What a test reads from parts and widgets: a shown tool tip as a window
// of its own, state by name, and the reading order of cells and sections.
#include <QGroupBox>
#include <QHeaderView>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>
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

struct StateCase {
    const char* label;
    std::function<void(QWidget* page)> make;
    const char* lookup;
    const char* selector;
    platform::Value expected;
};

class QtStates : public QtTest, public ::testing::WithParamInterface<StateCase> {};

TEST_P(QtStates, stateIsReadByName) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 400, 300), "States");
    auto* page = new QWidget;
    page->setLayout(new QVBoxLayout);
    window->setCentralWidget(page);
    GetParam().make(page);
    qttest::pump(30);
    platform::Value read;
    onQueue([&] { read = JTKTestSuite::element(GetParam().lookup).view()->performSelector(GetParam().selector); });
    EXPECT_EQ(read, GetParam().expected) << read.debugText() << " read, " << GetParam().expected.debugText() << " expected";
}

QTableWidget* sortedTable(QWidget* page) {
    auto* table = new QTableWidget(2, 2);
    table->setHorizontalHeaderLabels({"Name", "Size"});
    table->horizontalHeaderItem(1)->setToolTip("Bytes on disk");
    table->setSortingEnabled(true);
    table->sortByColumn(1, Qt::DescendingOrder);
    page->layout()->addWidget(table);
    return table;
}

QListWidget* checkList(QWidget* page) {
    auto* list = new QListWidget;
    auto* item = new QListWidgetItem("Spell check", list);
    item->setCheckState(Qt::Checked);
    item->setToolTip("Marks unknown words");
    page->layout()->addWidget(list);
    return list;
}

INSTANTIATE_TEST_SUITE_P(
    Qt, QtStates,
    ::testing::Values(
        StateCase{"checkableGroupBox",
                  [](QWidget* page) {
                      auto* group = new QGroupBox("Proxy");
                      group->setCheckable(true);
                      group->setChecked(false);
                      page->layout()->addWidget(group);
                  },
                  "Proxy", "isChecked", platform::Value(false)},
        StateCase{"widgetToolTip",
                  [](QWidget* page) {
                      auto* button = new QPushButton("Save");
                      button->setToolTip("Writes the file");
                      page->layout()->addWidget(button);
                  },
                  "Save", "toolTip", platform::Value("Writes the file")},
        StateCase{"itemChecked", [](QWidget* page) { checkList(page); }, "Spell check", "isChecked",
                  platform::Value(true)},
        StateCase{"itemToolTip", [](QWidget* page) { checkList(page); }, "Spell check", "toolTip",
                  platform::Value("Marks unknown words")},
        StateCase{"sortedSection", [](QWidget* page) { sortedTable(page); }, "Size", "sortOrder",
                  platform::Value("descending")},
        StateCase{"unsortedSection", [](QWidget* page) { sortedTable(page); }, "Name", "isSelected",
                  platform::Value(false)},
        StateCase{"sectionToolTip", [](QWidget* page) { sortedTable(page); }, "Size", "toolTip",
                  platform::Value("Bytes on disk")}),
    [](const auto& info) { return std::string(info.param.label); });

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
