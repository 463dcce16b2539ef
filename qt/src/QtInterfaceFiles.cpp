// Interface files over Qt: the window a file describes, made of Qt widgets. A
// view's name becomes its objectName, which lookups find as its name; an
// image view is a QLabel; a button's key equivalent becomes its shortcut
// (Return for "\r"). Frames are y up, in the parent's coordinates, as in the
// file; the window starts hidden.
#include <QGroupBox>
#include <QGuiApplication>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QWidget>
#include <vector>

#include "JTK/platform/Interface.h"
#include "JTK/services/InterfaceDescription.h"
#include "JTK/services/Resources.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

// A frame with y up in a parent of that height, as Qt's y-down geometry.
QRect geometryIn(const platform::Rect& frame, double parentHeight) {
    return QRect(qRound(frame.origin.x), qRound(parentHeight - frame.maxY()), qRound(frame.width()), qRound(frame.height()));
}

QString qText(const std::string& text) { return QString::fromStdString(text); }

class Builder {
public:
    explicit Builder(std::shared_ptr<platform::InterfaceOwner> owner) : owner_(std::move(owner)) {}

    void addSubviews(QWidget* parent, double parentHeight, const std::vector<services::ViewDescription>& subviews) {
        for (const auto& description : subviews) {
            QWidget* widget = makeWidget(description, parent);
            widget->setGeometry(geometryIn(description.frame, parentHeight));
            if (!description.name.empty()) widget->setObjectName(qText(description.name));
            if (!description.outlet.empty()) outlets_.emplace_back(description.outlet, widget);
            addSubviews(widget, description.frame.height(), description.subviews);
        }
    }

    // Outlets are told once the whole window stands.
    void connectOutlets() {
        for (const auto& [outlet, widget] : outlets_) owner_->connectOutlet(outlet, viewFor(widget));
    }

private:
    QWidget* makeWidget(const services::ViewDescription& description, QWidget* parent) {
        const auto& kind = description.kind;
        if (kind == "Box") return new QGroupBox(qText(description.title), parent);
        if (kind == "Label") return new QLabel(qText(description.text), parent);
        if (kind == "TextField") return new QLineEdit(qText(description.text), parent);
        if (kind == "ImageView") {
            auto* label = new QLabel(parent);
            label->setAlignment(Qt::AlignCenter);
            return label;
        }
        if (kind == "Button") return makeButton(description, parent);
        return new QWidget(parent);
    }

    QPushButton* makeButton(const services::ViewDescription& description, QWidget* parent) {
        auto* button = new QPushButton(qText(description.title), parent);
        if (description.keyEquivalent == "\r")
            button->setShortcut(QKeySequence(Qt::Key_Return));
        else if (!description.keyEquivalent.empty())
            button->setShortcut(QKeySequence(qText(description.keyEquivalent)));
        if (!description.action.empty()) {
            std::weak_ptr<platform::InterfaceOwner> owner = owner_;
            QObject::connect(button, &QPushButton::clicked, button, [owner, button, action = description.action] {
                if (auto target = owner.lock()) target->performAction(action, viewFor(button));
            });
        }
        return button;
    }

    std::shared_ptr<platform::InterfaceOwner> owner_;
    std::vector<std::pair<std::string, QWidget*>> outlets_;
};

}  // namespace

}  // namespace jtk::qt

namespace jtk::platform {

LoadedInterface loadInterface(const std::string& name, const std::shared_ptr<InterfaceOwner>& owner) {
    if (!owner) return {nullptr, "interface file " + name + ": no owner to connect it to"};
    auto read = services::readInterfaceFile(name, services::resourceFolders());
    if (!read.window) return {nullptr, read.error};
    const auto& description = *read.window;
    // A faulty file was refused above, before any widget was made.
    auto* window = new QWidget;
    window->setWindowTitle(qt::qText(description.title));
    Rect content = description.contentRect;
    double screenHeight = QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->geometry().height() : 0;
    window->setGeometry(qt::geometryIn(content, screenHeight));
    window->setFixedSize(window->size());
    qt::Builder builder(owner);
    builder.addSubviews(window, content.height(), description.subviews);
    builder.connectOutlets();
    return {qt::windowFor(window), {}};
}

}  // namespace jtk::platform
