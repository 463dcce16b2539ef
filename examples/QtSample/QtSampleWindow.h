// The Qt sample's main window: counters, two name fields, a volume slider, a
// colour combo box, a settings group, a status badge, a details panel that
// appears a moment after it is asked for, and a File menu with a shortcut.
// Its state shows in labels, so both a person and a UI test can read it.
#pragma once

#include <QMainWindow>
#include <QString>

class QLabel;
class QLineEdit;
class QWidget;

namespace qtsample {

class ClickTargetButton;

class QtSampleWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit QtSampleWindow(QWidget* parent = nullptr);

    // Reads the greeting and the note count from the application's data
    // folder and the user name from its settings.
    void loadData();
    // The File menu's command: writes a note into the data folder.
    void newDocument();

private:
    void buildMenu();
    void buildCounters(QWidget* content);
    void buildNameFields(QWidget* content);
    void buildChoices(QWidget* content);
    void showDetailsPanelSoon();
    QLabel* addLabel(QWidget* parent, const QRect& geometry, const QString& text, const char* name = nullptr);

    QLabel* greetingLabel_ = nullptr;
    QLabel* userLabel_ = nullptr;
    QLabel* notesLabel_ = nullptr;
    QLabel* countLabel_ = nullptr;
    QLabel* doubleClickLabel_ = nullptr;
    QLabel* selectionLabel_ = nullptr;
    QLabel* fullNameLabel_ = nullptr;
    QLabel* colourLabel_ = nullptr;
    QLabel* documentsLabel_ = nullptr;
    QLineEdit* firstName_ = nullptr;
    QLineEdit* lastName_ = nullptr;
    QWidget* detailsPanel_ = nullptr;
    int count_ = 0;
    int doubleClicks_ = 0;
    int documents_ = 0;
};

// The folder the application keeps its data in: Qt's standard application
// data location, where a UI test run installs its test data.
QString dataFolder();

}  // namespace qtsample
