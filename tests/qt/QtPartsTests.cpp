// Tabs, menu-bar titles and item-view items as elements: found by their
// text, read, clicked and double-clicked with real events, scrolled into
// view, and their state read by name.
#include <QDockWidget>
#include <QListView>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QStringListModel>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Images.h"
#include "QtFixture.h"

using namespace jtk;
using qttest::QtTest;

namespace {

struct PartCase {
    const char* label;
    // Puts the widget in the window; answers what the click at the part did.
    std::function<std::function<QString()>(QMainWindow* window)> make;
    const char* text;
    const char* typeName;
    const char* afterClick;
};

class QtParts : public QtTest, public ::testing::WithParamInterface<PartCase> {};

TEST_P(QtParts, aPartIsFoundByItsTextReadAndClickedAtItsCentre) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 400, 300), "Parts");
    auto clicked = GetParam().make(window);
    qttest::pump(30);
    std::string typeName, value;
    onQueue([&] {
        auto part = JTKTestSuite::element(GetParam().text);
        typeName = part.typeName();
        value = part.value();
        part.click();
    });
    EXPECT_EQ(typeName, GetParam().typeName);
    EXPECT_EQ(value, GetParam().text);
    EXPECT_EQ(clicked(), GetParam().afterClick);
}

std::vector<QString> fruit() { return {"Apple", "Banana", "Cherry"}; }

INSTANTIATE_TEST_SUITE_P(
    Qt, QtParts,
    ::testing::Values(
        PartCase{"tab",
                 [](QMainWindow* w) -> std::function<QString()> {
                     auto* tabs = new QTabWidget;
                     tabs->addTab(new QWidget, "&General");
                     tabs->addTab(new QWidget, "Advanced");
                     w->setCentralWidget(tabs);
                     return [tabs] { return tabs->tabText(tabs->currentIndex()); };
                 },
                 "Advanced", "QTabBarTab", "Advanced"},
        PartCase{"menuBarTitle",
                 [](QMainWindow* w) -> std::function<QString()> {
                     w->menuBar()->addMenu("&File")->addAction("New");
                     QMenu* edit = w->menuBar()->addMenu("&Edit");
                     edit->addAction("Undo");
                     return [edit] { return edit->isVisible() ? QString("open") : QString("closed"); };
                 },
                 "Edit", "QMenuBarItem", "open"},
        PartCase{"listWidgetItem",
                 [](QMainWindow* w) -> std::function<QString()> {
                     auto* list = new QListWidget;
                     for (const QString& name : fruit()) list->addItem(name);
                     w->setCentralWidget(list);
                     return [list] { return QString::number(list->currentRow()); };
                 },
                 "Cherry", "QListWidgetItem", "2"},
        PartCase{"tableCell",
                 [](QMainWindow* w) -> std::function<QString()> {
                     auto* table = new QTableWidget(2, 2);
                     for (int cell = 0; cell < 4; ++cell)
                         table->setItem(cell / 2, cell % 2, new QTableWidgetItem(QString("cell %1").arg(cell)));
                     w->setCentralWidget(table);
                     return [table] { return QString("%1,%2").arg(table->currentRow()).arg(table->currentColumn()); };
                 },
                 "cell 3", "QTableWidgetItem", "1,1"},
        PartCase{"expandedTreeChild",
                 [](QMainWindow* w) -> std::function<QString()> {
                     auto* tree = new QTreeWidget;
                     auto* top = new QTreeWidgetItem(tree, QStringList{"Fruit"});
                     new QTreeWidgetItem(top, QStringList{"Pear"});
                     tree->expandAll();
                     w->setCentralWidget(tree);
                     return [tree] { return tree->currentItem() ? tree->currentItem()->text(0) : QString(); };
                 },
                 "Pear", "QTreeWidgetItem", "Pear"},
        PartCase{"modelIndex",
                 [](QMainWindow* w) -> std::function<QString()> {
                     auto* list = new QListView;
                     list->setModel(new QStringListModel(QStringList{"Apple", "Banana", "Cherry"}, list));
                     w->setCentralWidget(list);
                     return [list] { return list->currentIndex().data().toString(); };
                 },
                 "Banana", "QModelIndex", "Banana"}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(QtTest, anItemScrolledAwayIsScrolledIntoViewAndDoubleClickedThere) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 200, 150), "Long");
    auto* list = new QListWidget;
    for (int row = 0; row < 100; ++row) list->addItem(QString("Row %1").arg(row));
    window->setCentralWidget(list);
    QString doubleClicked;
    QObject::connect(list, &QListWidget::itemDoubleClicked, [&](QListWidgetItem* item) { doubleClicked = item->text(); });
    qttest::pump(30);
    // A part's picture is the piece of its widget it covers: none while scrolled away.
    auto pictured = [](const std::shared_ptr<platform::View>& row) {
        auto bitmap = platform::bitmapForCachingDisplay(*row);
        return bitmap && platform::cacheDisplayInBitmap(*row, *bitmap) && bitmap->height == row->frame().height();
    };
    std::shared_ptr<platform::View> row;
    onQueue([&] { row = JTKTestSuite::element("Row 90").view(); });
    EXPECT_FALSE(pictured(row));
    onQueue([] { JTKTestSuite::element("Row 90").click({.doubleClick = true}); });
    EXPECT_EQ(doubleClicked, "Row 90");
    EXPECT_TRUE(pictured(row)) << "the same part, scrolled into view";
}

TEST_F(QtTest, statesOfPartsAndWidgetsReadByNameAndTitlesOfDocksAndStatusMessages) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 400, 300), "States");
    auto* tabs = new QTabWidget;
    tabs->addTab(new QWidget, "One");
    tabs->addTab(new QWidget, "Two");
    tabs->setTabEnabled(1, false);
    window->setCentralWidget(tabs);
    window->addDockWidget(Qt::LeftDockWidgetArea, new QDockWidget("Tools"));
    window->statusBar()->showMessage("Ready");
    qttest::pump(30);
    std::map<std::string, platform::Value> read;
    onQueue([&] {
        for (const char* tab : {"One", "Two"}) {
            auto view = JTKTestSuite::element(tab).view();
            read[std::string(tab) + " selected"] = view->performSelector("isSelected");
            read[std::string(tab) + " enabled"] = view->performSelector("isEnabled");
        }
        read["dock"] = JTKTestSuite::element("Tools").typeName();
        read["status"] = JTKTestSuite::element("Ready").typeName();
    });
    EXPECT_EQ(read["One selected"], platform::Value(true));
    EXPECT_EQ(read["Two selected"], platform::Value(false));
    EXPECT_EQ(read["One enabled"], platform::Value(true));
    EXPECT_EQ(read["Two enabled"], platform::Value(false));
    EXPECT_EQ(read["dock"], platform::Value("QDockWidget"));
    EXPECT_EQ(read["status"], platform::Value("QStatusBar"));
}

}  // namespace
