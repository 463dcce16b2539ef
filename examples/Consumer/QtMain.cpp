// The Consumer again, as a Qt Widgets application on JTK's Qt backend: the
// same "Greet" button and "Greeting" label, the same data folder (Qt's
// application data location, $XDG_DATA_HOME/Consumer) and the same UI test
// (ConsumerTests.cpp). Launched with "uxtest" it runs the test; otherwise it
// ends after a moment, as nobody may be at a headless display to close it.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QWidget>

#include <JTK/JTKTestSuite.h>
#include <JTK/qt/QtBackend.h>

namespace {

QString dataFolder() { return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation); }

QString personToGreet() {
    QFile file(QDir(dataFolder()).filePath(QStringLiteral("name.txt")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return QStringLiteral("stranger");
    QString name = QString::fromUtf8(file.readLine()).trimmed();
    return name.isEmpty() ? QStringLiteral("stranger") : name;
}

QString greet() {
    QString greeting = QStringLiteral("Hello, ") + personToGreet();
    QFile file(QDir(dataFolder()).filePath(QStringLiteral("greetings.txt")));
    if (file.open(QIODevice::Append | QIODevice::Text)) file.write((greeting + QLatin1Char('\n')).toUtf8());
    return greeting;
}

}  // namespace

int main(int argc, char** argv) {
    jtk::qt::prepareFontConfiguration();
    QApplication app(argc, argv);
    // No organisation: the data folder is <data home>/Consumer, as on the desktop.
    QApplication::setApplicationName(QStringLiteral("Consumer"));
    jtk::qt::installBackend(app);

    QWidget window;
    window.setWindowTitle(QStringLiteral("Consumer"));
    window.setFixedSize(300, 120);
    window.move(100, 200);
    auto* label = new QLabel(QStringLiteral("Not greeted yet"), &window);
    label->setGeometry(20, 20, 260, 24);
    label->setProperty("hbViewName", QStringLiteral("Greeting"));
    auto* button = new QPushButton(QStringLiteral("Greet"), &window);
    button->setGeometry(20, 70, 100, 30);
    QObject::connect(button, &QPushButton::clicked, label, [label] { label->setText(greet()); });
    window.show();

    jtk::JTKTestSuite::runTests();
    if (!jtk::JTKTestSuite::isTesting()) QTimer::singleShot(1000, &app, &QApplication::quit);
    return app.exec();
}
