// A small Qt 6 Widgets program built without JTK, standing for a real Qt 6
// application under the Qt 6 loader: a name field (Return greets too), a
// Greet button and the greeting, found by their object names and titles.
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Greeter"));
    auto* name = new QLineEdit;
    name->setObjectName(QStringLiteral("name"));
    auto* greet = new QPushButton(QStringLiteral("Greet"));
    auto* greeting = new QLabel;
    greeting->setObjectName(QStringLiteral("greeting"));
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(name);
    layout->addWidget(greet);
    layout->addWidget(greeting);
    QObject::connect(greet, &QPushButton::clicked,
                     [=] { greeting->setText(QStringLiteral("Hello, %1!").arg(name->text())); });
    QObject::connect(name, &QLineEdit::returnPressed, greet, &QPushButton::click);
    window.show();
    return application.exec();
}
