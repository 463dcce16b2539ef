// Tabs, menu-bar titles, item-view items, header sections and the items of
// an open combo box as elements: found by their text, read, clicked and
// double-clicked with real events, scrolled into view, and their state read
// by name.
#include <QColumnView>
#include <QComboBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QHeaderView>
#include <QListView>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QStandardItemModel>
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
    // Clicked first, as a person opens what shows the part (none when empty).
    const char* opener = "";
    friend void PrintTo(const PartCase& c, std::ostream* out) { *out << c.label; }
};

class QtParts : public QtTest, public ::testing::WithParamInterface<PartCase> {};

TEST_P(QtParts, aPartIsFoundByItsTextReadAndClickedAtItsCentre) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 400, 300), "Parts");
    auto clicked = GetParam().make(window);
    qttest::pump(30);
    std::string typeName, value;
    size_t found = 0, openers = 1;
    onQueue([&] {
        if (*GetParam().opener) {
            openers = JTKTestSuite::elements(GetParam().opener).size();
            JTKTestSuite::element(GetParam().opener).click();
        }
        found = JTKTestSuite::elements(GetParam().text).size();
        auto part = JTKTestSuite::element(GetParam().text);
        typeName = part.typeName();
        value = part.value();
        part.click();
    });
    EXPECT_EQ(found, 1u) << "each thing a person sees once is one element";
    EXPECT_EQ(openers, 1u);
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
                 "Banana", "QModelIndex", "Banana"},
        PartCase{"headerSectionScrolledAwaySorts",
                 [](QMainWindow* w) -> std::function<QString()> {
                     auto* table = new QTableWidget(3, 30);
                     table->setHorizontalHeaderItem(29, new QTableWidgetItem("Size"));
                     for (int row = 0; row < 3; ++row) {
                         table->setItem(row, 0, new QTableWidgetItem(fruit()[row]));
                         table->setItem(row, 29, new QTableWidgetItem(QString::number((row + 1) % 3)));
                     }
                     table->setSortingEnabled(true);
                     table->sortByColumn(0, Qt::AscendingOrder);
                     w->setCentralWidget(table);
                     return [table] { return table->item(0, 0)->text(); };
                 },
                 "Size", "QHeaderViewSection", "Cherry"},
        PartCase{"itemOfAnOpenComboBox",
                 [](QMainWindow* w) -> std::function<QString()> {
                     auto* combo = new QComboBox;
                     combo->addItems({"Red", "Green", "Blue"});
                     w->setCentralWidget(new QWidget);
                     combo->setParent(w->centralWidget());
                     combo->setGeometry(20, 20, 120, 30);
                     return [combo] { return combo->currentText() + (combo->view()->isVisible() ? " open" : ""); };
                 },
                 "Blue", "QComboBoxItem", "Blue", "Red"},
        PartCase{"secondColumnOfAColumnView",
                 [](QMainWindow* w) -> std::function<QString()> {
                     auto* model = new QStandardItemModel(w);
                     auto* top = new QStandardItem("Fruit");
                     top->appendRow(new QStandardItem("Pear"));
                     model->appendRow(top);
                     model->appendRow(new QStandardItem("Nuts"));
                     auto* columns = new QColumnView;
                     columns->setModel(model);
                     w->setCentralWidget(columns);
                     return [columns] { return columns->currentIndex().data().toString(); };
                 },
                 "Pear", "QModelIndex", "Pear", "Fruit"}),
    [](const auto& info) { return std::string(info.param.label); });

struct FarItemCase {
    const char* label;
    // Fills the view with 100 rows (or columns) "Row n", editable, and puts it in the window.
    std::function<QAbstractItemView*(QMainWindow* window)> make;
    const char* typeName;
    friend void PrintTo(const FarItemCase& c, std::ostream* out) { *out << c.label; }
};

class QtFarItems : public QtTest, public ::testing::WithParamInterface<FarItemCase> {};

// A part's picture is the piece of its widget it covers: none while scrolled away.
bool pictured(const std::shared_ptr<platform::View>& part) {
    auto bitmap = platform::bitmapForCachingDisplay(*part);
    return bitmap && platform::cacheDisplayInBitmap(*part, *bitmap) && bitmap->height == part->frame().height();
}

TEST_P(QtFarItems, anItemScrolledAwayIsScrolledIntoViewAndADoubleClickEditsIt) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 220, 160), "Long");
    QAbstractItemView* view = GetParam().make(window);
    view->setEditTriggers(QAbstractItemView::DoubleClicked);
    qttest::pump(30);
    std::shared_ptr<platform::View> far;
    std::string typeName;
    onQueue([&] {
        auto row = JTKTestSuite::element("Row 90");
        far = row.view();
        typeName = row.typeName();
    });
    EXPECT_FALSE(pictured(far));
    onQueue([] {
        JTKTestSuite::element("Row 90").click({.doubleClick = true});
        JTKTestSuite::typeText("Edited\r");
    });
    EXPECT_TRUE(pictured(far)) << "the part, scrolled into view";
    EXPECT_EQ(typeName, GetParam().typeName);
    EXPECT_EQ(far->accessibilityValue(), platform::Value("Edited")) << "the same part, edited in place";
}

template <class Item>
Item* editable(Item* item) {
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    return item;
}

QString rowName(int row) { return QString("Row %1").arg(row); }

INSTANTIATE_TEST_SUITE_P(
    Qt, QtFarItems,
    ::testing::Values(
        FarItemCase{"list",
                    [](QMainWindow* w) -> QAbstractItemView* {
                        auto* list = new QListWidget;
                        for (int row = 0; row < 100; ++row) editable(new QListWidgetItem(rowName(row), list));
                        w->setCentralWidget(list);
                        return list;
                    },
                    "QListWidgetItem"},
        FarItemCase{"tableColumns",
                    [](QMainWindow* w) -> QAbstractItemView* {
                        auto* table = new QTableWidget(1, 100);
                        for (int column = 0; column < 100; ++column)
                            table->setItem(0, column, new QTableWidgetItem(rowName(column)));
                        w->setCentralWidget(table);
                        return table;
                    },
                    "QTableWidgetItem"},
        FarItemCase{"treeChildren",
                    [](QMainWindow* w) -> QAbstractItemView* {
                        auto* tree = new QTreeWidget;
                        auto* top = new QTreeWidgetItem(tree, QStringList{"Rows"});
                        for (int row = 0; row < 100; ++row) editable(new QTreeWidgetItem(top, QStringList{rowName(row)}));
                        tree->expandAll();
                        w->setCentralWidget(tree);
                        return tree;
                    },
                    "QTreeWidgetItem"}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(QtTest, aCollapsedRowIsNotThereAndComesBackWhenItsParentExpands) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 300, 200), "Tree");
    auto* tree = new QTreeWidget;
    auto* top = new QTreeWidgetItem(tree, QStringList{"Fruit"});
    new QTreeWidgetItem(top, QStringList{"Pear"});
    tree->expandAll();
    window->setCentralWidget(tree);
    qttest::pump(30);
    std::shared_ptr<platform::View> pear;
    bool whileCollapsed = true, afterDoubleClick = false;
    onQueue([&] { pear = JTKTestSuite::element("Pear").view(); });
    tree->collapseAll();
    EXPECT_TRUE(pear->isHidden());
    onQueue([&] {
        whileCollapsed = JTKTestSuite::elementExists("Pear");
        JTKTestSuite::element("Fruit").click({.doubleClick = true});
        afterDoubleClick = JTKTestSuite::elementExists("Pear");
    });
    EXPECT_FALSE(whileCollapsed);
    EXPECT_TRUE(afterDoubleClick) << "a double click expands the row";
    EXPECT_FALSE(pear->isHidden()) << "the element kept from before finds its row again";
}

TEST_F(QtTest, statesOfPartsAndWidgetsReadByNameAndTitlesOfDocksAndStatusMessages) {
    auto* window = makeWindow<QMainWindow>(QRect(50, 50, 400, 300), "States");
    // The first tab's page: a checkable box, off, and a table sorted downwards whose cell has a tool tip.
    auto* page = new QWidget;
    auto* proxy = new QGroupBox("Proxy", page);
    proxy->setGeometry(0, 0, 150, 40);
    proxy->setCheckable(true);
    proxy->setChecked(false);
    auto* table = new QTableWidget(1, 1, page);
    table->setGeometry(0, 50, 250, 100);
    table->setHorizontalHeaderLabels({"Size"});
    table->setItem(0, 0, new QTableWidgetItem("Spell check"));
    table->item(0, 0)->setToolTip("Marks unknown words");
    table->setSortingEnabled(true);
    table->sortByColumn(0, Qt::DescendingOrder);
    auto* tabs = new QTabWidget;
    tabs->addTab(page, "One");
    tabs->addTab(new QWidget, "Two");
    tabs->setTabEnabled(1, false);
    window->setCentralWidget(tabs);
    window->addDockWidget(Qt::LeftDockWidgetArea, new QDockWidget("Tools"));
    window->statusBar()->showMessage("Ready");
    qttest::pump(30);
    std::map<std::string, platform::Value> read;
    onQueue([&] {
        read["proxy"] = JTKTestSuite::element("Proxy").view()->performSelector("isChecked");
        read["tip"] = JTKTestSuite::element("Spell check").view()->performSelector("toolTip");
        read["sort"] = JTKTestSuite::element("Size").view()->performSelector("sortOrder");
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
    EXPECT_EQ(read["proxy"], platform::Value(false));
    EXPECT_EQ(read["tip"], platform::Value("Marks unknown words"));
    EXPECT_EQ(read["sort"], platform::Value("descending"));
}

}  // namespace
