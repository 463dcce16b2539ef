// A small Qt 6 Widgets program built without JTK, standing for a real Qt 6
// application under the Qt 6 loader: a name field (Return greets too), a
// Greet button and the greeting, found by their object names and titles,
// and a clock that shows the time of day, as a status bar does: it differs
// from run to run, so its tests mask it.
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTime>
#include <QTimer>
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
    auto* clock = new QLabel;
    clock->setObjectName(QStringLiteral("clock"));
    auto showTime = [clock] { clock->setText(QTime::currentTime().toString(QStringLiteral("hh:mm:ss"))); };
    showTime();
    auto* ticks = new QTimer(&window);
    QObject::connect(ticks, &QTimer::timeout, showTime);
    ticks->start(1000);
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(name);
    layout->addWidget(greet);
    layout->addWidget(greeting);
    layout->addWidget(clock);
    QObject::connect(greet, &QPushButton::clicked,
                     [=] { greeting->setText(QStringLiteral("Hello, %1!").arg(name->text())); });
    QObject::connect(name, &QLineEdit::returnPressed, greet, &QPushButton::click);
    window.show();
    return application.exec();
}
