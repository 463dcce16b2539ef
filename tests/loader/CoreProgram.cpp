// A Qt program with a QCoreApplication and no widgets: the loader must
// refuse to start a run in it. Without a run it ends at once.
#include <QCoreApplication>
#include <QTimer>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return application.exec();
}
