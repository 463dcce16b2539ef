// Dialogs and menus the way real programs use them, driven from a test queue
// while this thread runs Qt: typing after a message box is answered, a menu
// command that opens a modal dialog, a menu choice after an earlier one, and
// what a test is told of a title no item has.
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "QtFixture.h"
#include "input/JTKMenuSearch.h"
#include "QtWrappers.h"

using namespace jtk;
using qttest::QtTest;

namespace {

class QtDialogFlow : public QtTest {
protected:
    QMainWindow* window = nullptr;
    QLineEdit* field = nullptr;
    QMenu* file = nullptr;
    QPushButton* options = nullptr;
    std::vector<QString> done;  // main thread only

    void SetUp() override {
        QtTest::SetUp();
        window = makeWindow<QMainWindow>(QRect(100, 100, 400, 240), "Editor");
        auto* central = new QWidget;
        auto* layout = new QVBoxLayout(central);
        field = new QLineEdit;
        field->setObjectName("Field");
        layout->addWidget(field);
        auto* askButton = new QPushButton("Ask");
        askButton->setFocusPolicy(Qt::NoFocus);  // the field keeps the focus
        layout->addWidget(askButton);
        options = new QPushButton("Options");
        auto* optionsMenu = new QMenu(options);
        QObject::connect(optionsMenu->addAction("Bold"), &QAction::triggered, [this] { done.push_back("Bold"); });
        options->setMenu(optionsMenu);
        layout->addWidget(options);
        window->setCentralWidget(central);
        file = window->menuBar()->addMenu("&File");
        file->addAction("&New");
        file->addSeparator();
        QObject::connect(file->addAction("Save &As…"), &QAction::triggered, [this] { ask("Save"); });
        QObject::connect(askButton, &QPushButton::clicked, [this] { ask("Ask"); });
        qttest::pump(30);
        field->setFocus();
    }

    // A modal question, as programs ask it; notes the command and the answer.
    void ask(const QString& command) {
        auto answer = QMessageBox::question(nullptr, "Question", command + "?", QMessageBox::Yes | QMessageBox::No);
        done.push_back(command + (answer == QMessageBox::Yes ? ": yes" : ": no"));
    }
};

TEST_F(QtDialogFlow, keysGoToTheWindowLeftActiveWhenAnAnsweredMessageBoxHides) {
    onQueue([] {
        JTKTestSuite::element("Ask").click();
        JTKTestSuite::element("Yes").click();
        JTKTestSuite::typeText("ok3");
    });
    EXPECT_EQ(done, (std::vector<QString>{"Ask: yes"}));
    EXPECT_EQ(QApplication::activeWindow(), window);
    EXPECT_EQ(field->text(), "ok3");
}

TEST_F(QtDialogFlow, aMenuCommandThatOpensAModalDialogLetsTheTestAnswerIt) {
    onQueue([this] {
        JTKTestSuite::element("File").clickMenuItem("Save As…");
        JTKTestSuite::element("No").click();
        JTKTestSuite::typeText("x");
    });
    EXPECT_EQ(done, (std::vector<QString>{"Save: no"}));
    EXPECT_FALSE(file->isVisible());
    EXPECT_EQ(field->text(), "x");
}

TEST_F(QtDialogFlow, aChoiceAfterAnEarlierOneOpensTheElementsOwnMenu) {
    onQueue([this] {
        JTKTestSuite::element("File").click();
        JTKTestSuite::element("Editor").clickMenuItem("New");
        EXPECT_EQ(JTKElement::currentOpenMenu(), nullptr) << "the chosen menu is closed";
        JTKTestSuite::element("Options").clickMenuItem("Bold");
    });
    EXPECT_EQ(done, (std::vector<QString>{"Bold"}));
    EXPECT_FALSE(options->menu()->isVisible());
}

TEST(QtMenuSearch, aMissingTitleIsReportedWithTheItemsThereAre) {
    QMenu menu("&Edit");
    menu.addAction("&Undo");
    menu.addSeparator();
    QMenu* find = menu.addMenu("F&ind");
    find->addAction("Find && Replace");
    menu.addAction("Paste");
    auto wrapped = qt::menuFor(&menu);
    EXPECT_EQ(jtkFindMenuItem("Find & Replace", *wrapped)->menu(), qt::menuFor(find));
    EXPECT_EQ(jtkFindMenuItem("Redo", *wrapped), nullptr);
    EXPECT_EQ(jtkMissingMenuItemMessage("Redo", *wrapped),
              "JTK: no menu item \"Redo\" in the menu \"Edit\"; its items: \"Undo\", \"Find\", "
              "\"Find \u25B8 Find & Replace\", \"Paste\"");
    QMenu empty;
    EXPECT_EQ(jtkMissingMenuItemMessage("Redo", *qt::menuFor(&empty)), "JTK: no menu item \"Redo\" in the menu, which has no items");
}

}  // namespace
