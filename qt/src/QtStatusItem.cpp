#include "QtStatusItem.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <vector>

#include "QtWrappers.h"

namespace jtk::qt {

namespace {

constexpr int stripHeight = 22;
constexpr int rightMargin = 8;
constexpr double titlePadding = 10;
// A title's width from its length, as the embedded desktop lays out its
// items: the same strip on every machine, whatever its fonts.
constexpr double pointsPerCharacter = 7.5;

std::vector<QtStatusItem*>& items() {
    static std::vector<QtStatusItem*> list;
    return list;
}

size_t characterCount(const std::string& text) {
    size_t count = 0;
    for (unsigned char c : text) count += (c & 0xC0) != 0x80;
    return count;
}

void layOut() {
    QScreen* screen = QGuiApplication::primaryScreen();
    int right = (screen ? screen->geometry().right() + 1 : 1440) - rightMargin;
    for (QtStatusItem* item : items()) {
        int width = static_cast<int>(item->width());
        right -= width;
        item->widget()->setGeometry(right, 0, width, stripHeight);
    }
}

}  // namespace

StatusBarButton::StatusBarButton() {
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    // The item never keeps the program running: closing its last window quits it.
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
    setFlat(true);
}

QtStatusItem::QtStatusItem(double length) : length_(length), button_(new StatusBarButton) {
    QObject::connect(button_, &QPushButton::clicked, button_, [this] {
        if (auto action = action_) action();
    });
    items().push_back(this);
}

QtStatusItem::~QtStatusItem() {
    std::erase(items(), this);
    delete button_;
    layOut();
}

std::string QtStatusItem::title() const { return button_->text().toStdString(); }

void QtStatusItem::setTitle(const std::string& title) {
    button_->setText(QString::fromStdString(title));
    layOut();
    button_->show();
}

void QtStatusItem::setAction(std::function<void()> action) { action_ = std::move(action); }

std::shared_ptr<platform::View> QtStatusItem::button() const { return viewFor(button_); }

double QtStatusItem::width() const {
    if (length_ >= 0) return length_;
    return std::ceil(2 * titlePadding + pointsPerCharacter * static_cast<double>(characterCount(title())));
}

}  // namespace jtk::qt

namespace jtk::platform {

std::shared_ptr<StatusItem> statusItemWithLength(double length) {
    auto item = std::make_shared<qt::QtStatusItem>(length);
    qt::layOut();
    item->widget()->show();
    return item;
}

}  // namespace jtk::platform
