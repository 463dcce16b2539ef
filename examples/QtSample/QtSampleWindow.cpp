#include "QtSampleWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSettings>
#include <QSlider>
#include <QStandardPaths>
#include <QStyle>
#include <QTimer>

#include "QtSampleWidgets.h"

namespace qtsample {

namespace {

// Names a widget for lookups with a dynamic property, the lightest of the
// three ways (a class's Q_PROPERTY and the objectName are the others).
void nameWidget(QWidget* widget, const char* name) { widget->setProperty("hbViewName", QString::fromUtf8(name)); }

QString readFirstLine(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return {};
    return QString::fromUtf8(file.readLine()).trimmed();
}

}  // namespace

QString dataFolder() { return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation); }

QtSampleWindow::QtSampleWindow(QWidget* parent) : QMainWindow(parent) {
    setWindowTitle(QStringLiteral("Qt Sample"));
    auto* content = new QWidget(this);
    setCentralWidget(content);
    buildMenu();
    buildCounters(content);
    buildNameFields(content);
    buildChoices(content);
    setFixedSize(600, 440);
    move(100, 100);
}

QLabel* QtSampleWindow::addLabel(QWidget* parent, const QRect& geometry, const QString& text, const char* name) {
    auto* label = new QLabel(text, parent);
    label->setGeometry(geometry);
    if (name) nameWidget(label, name);
    return label;
}

void QtSampleWindow::buildMenu() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction* newAction = file->addAction(QStringLiteral("&New Document"));
    newAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    connect(newAction, &QAction::triggered, this, [this] { newDocument(); });
}

void QtSampleWindow::buildCounters(QWidget* content) {
    greetingLabel_ = addLabel(content, {20, 10, 560, 24}, QStringLiteral("No greeting yet"), "Greeting");
    userLabel_ = addLabel(content, {20, 38, 360, 24}, QStringLiteral("User: nobody"), "User");
    notesLabel_ = addLabel(content, {400, 38, 180, 24}, QStringLiteral("Notes: 0"), "Notes");

    auto* add = new QPushButton(QStringLiteral("Add"), content);
    add->setGeometry(20, 76, 100, 30);
    countLabel_ = addLabel(content, {130, 79, 200, 24}, QStringLiteral("Count: 0"), "Count");
    connect(add, &QPushButton::clicked, this, [this] { countLabel_->setText(QStringLiteral("Count: %1").arg(++count_)); });

    auto* open = new ClickTargetButton(QStringLiteral("Open"), content);
    open->setGeometry(20, 116, 100, 30);
    doubleClickLabel_ = addLabel(content, {130, 119, 200, 24}, QStringLiteral("Double clicks: 0"), "DoubleClicks");
    open->onDoubleClick([this] { doubleClickLabel_->setText(QStringLiteral("Double clicks: %1").arg(++doubleClicks_)); });

    auto* select = new ClickTargetButton(QStringLiteral("Select"), content);
    select->setGeometry(20, 156, 100, 30);
    selectionLabel_ = addLabel(content, {130, 159, 200, 24}, QStringLiteral("Selection: none"), "Selection");
    connect(select, &QPushButton::clicked, this, [this, select] {
        bool extended = select->lastClickModifiers() & Qt::ShiftModifier;
        selectionLabel_->setText(extended ? QStringLiteral("Selection: extended") : QStringLiteral("Selection: single"));
    });
}

void QtSampleWindow::buildNameFields(QWidget* content) {
    firstName_ = new QLineEdit(content);
    firstName_->setGeometry(20, 200, 150, 24);
    nameWidget(firstName_, "FirstName");
    lastName_ = new QLineEdit(content);
    lastName_->setGeometry(180, 200, 150, 24);
    nameWidget(lastName_, "LastName");
    setTabOrder(firstName_, lastName_);
    fullNameLabel_ = addLabel(content, {340, 200, 240, 24}, QStringLiteral("Full name:"), "FullName");
    // The full name follows when an edit ends (Return, or Tab to the next field).
    auto updateFullName = [this] {
        fullNameLabel_->setText(QStringLiteral("Full name: %1 %2").arg(firstName_->text(), lastName_->text()));
    };
    connect(firstName_, &QLineEdit::editingFinished, this, updateFullName);
    connect(lastName_, &QLineEdit::editingFinished, this, updateFullName);
}

void QtSampleWindow::buildChoices(QWidget* content) {
    auto* volume = new QSlider(Qt::Horizontal, content);
    volume->setRange(0, 100);
    // One step per pixel: the groove is as long as the range plus the handle.
    int handle = volume->style()->pixelMetric(QStyle::PM_SliderLength, nullptr, volume);
    volume->setGeometry(20, 240, 100 + handle, 20);
    volume->setObjectName(QStringLiteral("Volume"));  // named the Qt way
    // A slider's value is a number, which tests read as text only from the
    // widget's own hbViewValue: a dynamic property kept up to date.
    volume->setProperty("hbViewValue", 0);
    connect(volume, &QSlider::valueChanged, volume, [volume](int value) { volume->setProperty("hbViewValue", value); });

    auto* colour = new QComboBox(content);
    colour->setGeometry(20, 276, 150, 26);
    colour->addItems({QStringLiteral("Red"), QStringLiteral("Green"), QStringLiteral("Blue"), QStringLiteral("Teal"),
                      QStringLiteral("Navy")});
    nameWidget(colour, "Colour");
    colourLabel_ = addLabel(content, {180, 277, 200, 24}, QStringLiteral("Colour: none"), "ColourChoice");
    connect(colour, &QComboBox::activated, this,
            [this, colour](int index) { colourLabel_->setText(QStringLiteral("Colour: ") + colour->itemText(index)); });

    auto* settings = new QGroupBox(QStringLiteral("Settings"), content);
    settings->setGeometry(340, 240, 240, 90);
    auto* darkMode = new QCheckBox(QStringLiteral("Dark mode"), settings);
    darkMode->setGeometry(10, 24, 150, 24);
    auto* theme = addLabel(settings, {10, 54, 150, 24}, QStringLiteral("Theme: light"), "Theme");
    connect(darkMode, &QCheckBox::toggled, theme,
            [theme](bool on) { theme->setText(on ? QStringLiteral("Theme: dark") : QStringLiteral("Theme: light")); });

    auto* status = new StatusBadge(content);
    status->setGeometry(20, 320, 260, 40);

    auto* showDetails = new QPushButton(QStringLiteral("Show Details"), content);
    showDetails->setGeometry(20, 380, 120, 30);
    connect(showDetails, &QPushButton::clicked, this, [this] { showDetailsPanelSoon(); });
    documentsLabel_ = addLabel(content, {150, 383, 200, 24}, QStringLiteral("Documents: 0"), "Documents");
}

void QtSampleWindow::showDetailsPanelSoon() {
    // The panel takes a moment to prepare, as a real one loading its content would.
    QTimer::singleShot(300, this, [this] {
        if (detailsPanel_) return;
        detailsPanel_ = new QWidget(this, Qt::Window);
        detailsPanel_->setWindowTitle(QStringLiteral("Details"));
        detailsPanel_->setFixedSize(240, 120);
        detailsPanel_->move(300, 150);
        addLabel(detailsPanel_, {20, 40, 200, 24}, QStringLiteral("Details ready"), "DetailsStatus");
        detailsPanel_->show();
        detailsPanel_->activateWindow();
    });
}

void QtSampleWindow::newDocument() {
    // A new note goes into the data folder, so a test run changes the
    // user's data and must put it back.
    documentsLabel_->setText(QStringLiteral("Documents: %1").arg(++documents_));
    QDir notes(dataFolder() + QStringLiteral("/Documents"));
    if (notes.mkpath(QStringLiteral("."))) {
        QFile note(notes.filePath(QStringLiteral("Note %1.txt").arg(documents_)));
        if (note.open(QIODevice::WriteOnly | QIODevice::Text)) note.write("A new note\n");
    }
    loadData();
}

void QtSampleWindow::loadData() {
    const QString folder = dataFolder();
    const QString greeting = readFirstLine(folder + QStringLiteral("/greeting.txt"));
    greetingLabel_->setText(greeting.isEmpty() ? QStringLiteral("No greeting yet") : greeting);
    const auto notes = QDir(folder + QStringLiteral("/Documents")).entryList(QDir::Files).size();
    notesLabel_->setText(QStringLiteral("Notes: %1").arg(notes));
    const QString user = QSettings().value(QStringLiteral("userName")).toString();
    userLabel_->setText(QStringLiteral("User: ") + (user.isEmpty() ? QStringLiteral("nobody") : user));
}

}  // namespace qtsample
