// A small Qt 5 Widgets program built without JTK, standing for a program a
// person records under the Qt 5 loader: an entry line that adds its text to
// the notes on Return and empties itself, View ▸ Refresh (F5), and
// Edit ▸ Upper Case without a shortcut. The state line says what happened.
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QStringList>
#include <QVBoxLayout>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Notes"));
    auto* central = new QWidget;
    auto* entry = new QLineEdit;
    entry->setObjectName(QStringLiteral("entry"));
    auto* state = new QLabel;
    state->setObjectName(QStringLiteral("state"));
    auto* layout = new QVBoxLayout(central);
    layout->addWidget(entry);
    layout->addWidget(state);
    window.setCentralWidget(central);

    QStringList notes;
    int refreshed = 0;
    auto show = [&] { state->setText(notes.join(QStringLiteral(", ")) + QStringLiteral("; refreshed %1").arg(refreshed)); };
    QObject::connect(entry, &QLineEdit::returnPressed, [&] {
        notes << entry->text();
        entry->clear();
        show();
    });
    QAction* refresh = window.menuBar()->addMenu(QStringLiteral("&View"))->addAction(QStringLiteral("&Refresh"));
    refresh->setShortcut(QKeySequence(Qt::Key_F5));
    QObject::connect(refresh, &QAction::triggered, [&] {
        ++refreshed;
        show();
    });
    QAction* upper = window.menuBar()->addMenu(QStringLiteral("&Edit"))->addAction(QStringLiteral("&Upper Case"));
    QObject::connect(upper, &QAction::triggered, [&] {
        for (auto& note : notes) note = note.toUpper();
        show();
    });
    show();
    window.resize(360, 160);
    window.show();
    return application.exec();
}
