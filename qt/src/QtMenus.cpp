// Menus over QMenu and QMenuBar, menu items over QAction. A menu bar is not a
// QMenu, but the framework sees both as menus: the bar's items are its
// top-level actions, whose submenus are the bar's menus. Main thread only.
#include <QAction>
#include <QActionEvent>
#include <QApplication>
#include <QEvent>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTimer>

#include "JTK/platform/Events.h"
#include "JTK/platform/Notifications.h"
#include "QtObjectRuntime.h"
#include "QtParts.h"
#include "QtWrapperRegistry.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

// The shortcut's first key combination as modifier bits and key (Qt's encoding).
int firstKeyCombination(const QKeySequence& sequence) {
    if (sequence.isEmpty()) return 0;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return sequence[0].toCombined();
#else
    return sequence[0];
#endif
}

// True while the framework performs an item, which posts its own notification.
bool performingItem = false;

QList<QAction*> actionsOf(QObject* container) {
    if (auto* widget = qobject_cast<QWidget*>(container)) return widget->actions();
    return {};
}

std::shared_ptr<platform::Menu> menuOfContainer(QObject* container) {
    if (auto* menu = qobject_cast<QMenu*>(container)) return menuFor(menu);
    if (auto* bar = qobject_cast<QMenuBar*>(container)) return menuBarFor(bar);
    return nullptr;
}

class QtMenuItem : public platform::MenuItem {
public:
    explicit QtMenuItem(QAction* action) : action_(action) {}

    std::string className() const override { return action_ ? qtClassName(action_) : "QAction"; }
    bool respondsToSelector(const std::string& selector) const override {
        return MenuItem::respondsToSelector(selector) || (action_ && qtRespondsToSelector(action_, selector));
    }
    platform::Value performSelector(const std::string& selector, const platform::Value& argument) override {
        if (MenuItem::respondsToSelector(selector) || !action_) return MenuItem::performSelector(selector, argument);
        return qtPerformSelector(action_, selector);
    }

    std::string title() const override {
        return action_ ? toStdString(withoutMnemonics(action_->text())) : std::string();
    }
    std::shared_ptr<platform::Menu> submenu() const override {
        return action_ ? menuFor(action_->menu()) : nullptr;
    }
    std::shared_ptr<platform::Menu> menu() const override {
        if (container_) return menuOfContainer(container_);
        return action_ ? menuOfContainer(action_->parent()) : nullptr;
    }
    std::string keyEquivalent() const override {
        int combined = action_ ? firstKeyCombination(action_->shortcut()) : 0;
        int key = combined & ~int(Qt::KeyboardModifierMask);
        if (key == 0) return {};
        return toStdString(QKeySequence(key).toString(QKeySequence::PortableText).toLower());
    }
    uint64_t keyEquivalentModifierMask() const override {
        int combined = action_ ? firstKeyCombination(action_->shortcut()) : 0;
        uint64_t flags = 0;
        if (combined & Qt::ControlModifier) flags |= platform::eventFlags::command;
        if (combined & Qt::MetaModifier) flags |= platform::eventFlags::control;
        if (combined & Qt::AltModifier) flags |= platform::eventFlags::alternate;
        if (combined & Qt::ShiftModifier) flags |= platform::eventFlags::shift;
        return flags;
    }

    std::shared_ptr<platform::View> titleView() const override {
        // A menu-bar title is a part of its bar, one per visible title in order.
        auto* bar = qobject_cast<QMenuBar*>(container_.data());
        if (!bar || !action_) return nullptr;
        auto parts = partsOf(bar);
        size_t index = 0;
        for (QAction* action : bar->actions()) {
            if (!action->isVisible() || action->isSeparator()) continue;
            if (action == action_) return index < parts.size() ? parts[index] : nullptr;
            ++index;
        }
        return nullptr;
    }

    QAction* action() const { return action_; }
    // The menu or bar the item was listed in; an action may sit in several.
    void setContainer(QObject* container) {
        if (container) container_ = container;
    }

private:
    QPointer<QAction> action_;
    QPointer<QObject> container_;
};

// A QMenu or a QMenuBar seen as a menu.
class QtMenu : public platform::Menu {
public:
    explicit QtMenu(QWidget* widget) : widget_(widget) {}

    std::string className() const override { return widget_ ? qtClassName(widget_) : "QMenu"; }
    bool respondsToSelector(const std::string& selector) const override {
        return Menu::respondsToSelector(selector) || (widget_ && qtRespondsToSelector(widget_, selector));
    }
    platform::Value performSelector(const std::string& selector, const platform::Value& argument) override {
        if (Menu::respondsToSelector(selector) || !widget_) return Menu::performSelector(selector, argument);
        return qtPerformSelector(widget_, selector);
    }

    std::string title() const override {
        if (auto* menu = qobject_cast<QMenu*>(widget_.data())) return toStdString(withoutMnemonics(menu->title()));
        return {};
    }
    std::vector<std::shared_ptr<platform::MenuItem>> itemArray() const override {
        std::vector<std::shared_ptr<platform::MenuItem>> items;
        for (QAction* action : actionsOf(widget_)) items.push_back(itemFor(action));
        return items;
    }
    int indexOfItem(const std::shared_ptr<platform::MenuItem>& item) const override {
        auto* qtItem = dynamic_cast<QtMenuItem*>(item.get());
        if (!qtItem || !qtItem->action()) return -1;
        return int(actionsOf(widget_).indexOf(qtItem->action()));
    }
    void performActionForItemAtIndex(int index) override {
        auto actions = actionsOf(widget_);
        if (index < 0 || index >= int(actions.size())) return;
        QPointer<QAction> action = actions[index];
        auto item = itemFor(action);
        if (auto* menu = qobject_cast<QMenu*>(widget_.data()); menu && menu->isVisible()) menu->hide();
        // The notification below is the choice's; the trigger posts none of its own.
        performingItem = true;
        action->trigger();
        performingItem = false;
        platform::defaultNotificationCenter().post(platform::menuDidSendActionNotification, shared_from_this(),
                                                   platform::ValueDictionary{{"MenuItem", item}});
    }
    void cancelTracking() override {
        if (auto* menu = qobject_cast<QMenu*>(widget_.data())) {
            menu->hide();
        } else if (QWidget* popup = QApplication::activePopupWidget()) {
            popup->close();
        }
    }

private:
    std::shared_ptr<platform::MenuItem> itemFor(QAction* action) const {
        auto item = menuItemFor(action);
        if (auto* qtItem = dynamic_cast<QtMenuItem*>(item.get())) qtItem->setContainer(widget_);
        return item;
    }

    QPointer<QWidget> widget_;
};

// True from a person's choice in an open menu (a release or a key in it) or
// a shortcut reaching an action, until the event loop turns again: the
// action triggers while that input is handled. An action triggered
// otherwise (a tool button that shares it, the program itself) is no menu
// choice.
bool choosingFromMenu = false;

void noteMenuInput() {
    if (choosingFromMenu) return;
    choosingFromMenu = true;
    QTimer::singleShot(0, qApp, [] { choosingFromMenu = false; });
}

// A person's choice of a menu command posts "MenuDidSendActionNotification",
// as the framework's own choice does, so that the recorder hears of it.
void watchChoices(QAction* action, QWidget* container) {
    if (!action || action->property("jtkChoiceWatched").toBool()) return;
    action->setProperty("jtkChoiceWatched", true);
    QPointer<QWidget> owner = container;
    QObject::connect(action, &QAction::triggered, action, [action, owner] {
        if (!choosingFromMenu || performingItem) return;
        choosingFromMenu = false;
        auto menu = menuOfContainer(owner ? owner.data() : action->parent());
        platform::defaultNotificationCenter().post(platform::menuDidSendActionNotification, menu,
                                                   platform::ValueDictionary{{"MenuItem", menuItemFor(action)}});
    });
}

// Posts the begin-tracking notification whenever a QMenu shows, whoever opens
// it (a menu bar, a context menu, a button's menu), and when a combo box's
// pop-up list shows; watches the actions of menus and menu bars for a
// person's choices.
class MenuTrackingObserver : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
            case QEvent::ActionAdded:
                if (qobject_cast<QMenu*>(watched) || qobject_cast<QMenuBar*>(watched))
                    watchChoices(static_cast<QActionEvent*>(event)->action(), static_cast<QWidget*>(watched));
                break;
            case QEvent::MouseButtonRelease:
            case QEvent::KeyPress:
                if (qobject_cast<QMenu*>(watched)) noteMenuInput();
                break;
            case QEvent::Shortcut:
                if (qobject_cast<QAction*>(watched)) noteMenuInput();
                break;
            default:
                break;
        }
        if (event->type() == QEvent::Show) {
            std::shared_ptr<platform::Menu> menu;
            if (auto* qmenu = qobject_cast<QMenu*>(watched))
                menu = menuFor(qmenu);
            else if (auto* combo = comboOfPopup(watched))
                menu = comboMenuFor(combo);
            if (menu) platform::defaultNotificationCenter().post(platform::menuDidBeginTrackingNotification, menu);
        }
        return QObject::eventFilter(watched, event);
    }
};

void installMenuTrackingObserver() {
    auto* app = QCoreApplication::instance();
    app->installEventFilter(new MenuTrackingObserver(app));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(installMenuTrackingObserver)

std::shared_ptr<platform::Menu> menuFor(QMenu* menu) {
    if (!menu) return nullptr;
    auto wrapper = WrapperRegistry::wrapperFor(menu, WrapperRole::menu, [menu] {
        return std::make_shared<QtMenu>(menu);
    });
    return std::static_pointer_cast<platform::Menu>(wrapper);
}

std::shared_ptr<platform::Menu> menuBarFor(QMenuBar* menuBar) {
    if (!menuBar) return nullptr;
    auto wrapper = WrapperRegistry::wrapperFor(menuBar, WrapperRole::menu, [menuBar] {
        return std::make_shared<QtMenu>(menuBar);
    });
    return std::static_pointer_cast<platform::Menu>(wrapper);
}

std::shared_ptr<platform::MenuItem> menuItemFor(QAction* action) {
    if (!action) return nullptr;
    auto wrapper = WrapperRegistry::wrapperFor(action, WrapperRole::menuItem, [action] {
        return std::make_shared<QtMenuItem>(action);
    });
    return std::static_pointer_cast<platform::MenuItem>(wrapper);
}

}  // namespace jtk::qt
