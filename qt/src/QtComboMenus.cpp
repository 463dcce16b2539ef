// A combo box's pop-up list seen as a menu: its entries are the items, and
// choosing one goes the way a person's choice goes, through the list view
// (the entry made current, then Return), so that the combo box changes its
// entry, closes the list and emits activated as for a person. The wrapper
// belongs to the combo box; the items are made on demand. Main thread only.
#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>

#include "JTK/platform/Notifications.h"
#include "QtObjectRuntime.h"
#include "QtWrapperRegistry.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

class ComboMenuItem : public platform::MenuItem {
public:
    ComboMenuItem(QComboBox* combo, int index) : combo_(combo), index_(index) {}

    std::string className() const override { return "ComboBoxItem"; }
    std::string title() const override { return combo_ ? toStdString(combo_->itemText(index_)) : std::string(); }
    std::shared_ptr<platform::Menu> submenu() const override { return nullptr; }
    std::shared_ptr<platform::Menu> menu() const override { return comboMenuFor(combo_); }
    std::string keyEquivalent() const override { return {}; }
    uint64_t keyEquivalentModifierMask() const override { return 0; }

    QComboBox* combo() const { return combo_; }
    int index() const { return index_; }

private:
    QPointer<QComboBox> combo_;
    int index_;
};

class ComboMenu : public platform::Menu {
public:
    explicit ComboMenu(QComboBox* combo) : combo_(combo) {}

    std::string className() const override { return "ComboBoxMenu"; }
    std::string title() const override { return combo_ ? toStdString(combo_->currentText()) : std::string(); }
    std::vector<std::shared_ptr<platform::MenuItem>> itemArray() const override {
        std::vector<std::shared_ptr<platform::MenuItem>> items;
        for (int index = 0; combo_ && index < combo_->count(); ++index)
            items.push_back(std::make_shared<ComboMenuItem>(combo_, index));
        return items;
    }
    int indexOfItem(const std::shared_ptr<platform::MenuItem>& item) const override {
        auto* entry = dynamic_cast<ComboMenuItem*>(item.get());
        return entry && entry->combo() == combo_ ? entry->index() : -1;
    }
    void performActionForItemAtIndex(int index) override {
        if (!combo_ || index < 0 || index >= combo_->count()) return;
        if (!combo_->view()->isVisible()) combo_->showPopup();
        QAbstractItemView* list = combo_->view();
        list->setCurrentIndex(combo_->model()->index(index, combo_->modelColumn(), combo_->rootModelIndex()));
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(list, &press);
        platform::defaultNotificationCenter().post(platform::menuDidSendActionNotification, shared_from_this(),
                                                   platform::ValueDictionary{{"MenuItem", itemArray()[index]}});
    }
    void cancelTracking() override {
        if (combo_) combo_->hidePopup();
    }

private:
    QPointer<QComboBox> combo_;
};

}  // namespace

std::shared_ptr<platform::Menu> comboMenuFor(QComboBox* combo) {
    if (!combo) return nullptr;
    auto wrapper = WrapperRegistry::wrapperFor(combo, WrapperRole::menu, [combo] { return std::make_shared<ComboMenu>(combo); });
    return std::static_pointer_cast<platform::Menu>(wrapper);
}

QComboBox* comboOfPopup(QObject* popup) {
    auto* widget = qobject_cast<QWidget*>(popup);
    if (!widget || !widget->isWindow() || widget->windowType() != Qt::Popup) return nullptr;
    return qobject_cast<QComboBox*>(widget->parentWidget());
}

}  // namespace jtk::qt
