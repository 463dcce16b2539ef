#include "QtParts.h"

#include <QAbstractItemView>
#include <QAction>
#include <QHeaderView>
#include <QListView>
#include <QListWidget>
#include <QMenuBar>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QTabBar>
#include <QTableView>
#include <QTableWidget>
#include <QTreeView>
#include <QTreeWidget>
#include <algorithm>
#include <map>

#include "QtObjectRuntime.h"
#include "QtWrapperRegistry.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

// An item view lists at most this many items, so that a search through a
// very long list stays affordable; the rest cannot be found by a test.
constexpr size_t mostItems = 5000;

enum class PartKind { tab, barTitle, item };

class QtPart : public platform::View {
public:
    QtPart(QWidget* owner, PartKind kind, int tab, QAction* action, const QModelIndex& item)
        : owner_(owner), kind_(kind), tab_(tab), action_(action), item_(item) {}

    QWidget* owner() const { return owner_.data(); }
    int tab() const { return tab_; }
    QAction* action() const { return action_.data(); }
    QModelIndex item() const { return item_; }

    // The item view an item belongs to (its owner is the view's viewport).
    QAbstractItemView* itemView() const {
        return owner_ ? qobject_cast<QAbstractItemView*>(owner_->parentWidget()) : nullptr;
    }

    std::string className() const override {
        switch (kind_) {
            case PartKind::tab:
                return "QTabBarTab";
            case PartKind::barTitle:
                return "QMenuBarItem";
            case PartKind::item:
                break;
        }
        QAbstractItemView* view = itemView();
        if (qobject_cast<QListWidget*>(view)) return "QListWidgetItem";
        if (qobject_cast<QTableWidget*>(view)) return "QTableWidgetItem";
        if (qobject_cast<QTreeWidget*>(view)) return "QTreeWidgetItem";
        return "QModelIndex";
    }

    bool respondsToSelector(const std::string& selector) const override {
        if (selector == "title" || selector == "isEnabled" || selector == "isSelected") return true;
        if (selector == "isChecked") return checkState().isValid();
        return View::respondsToSelector(selector);
    }

    platform::Value performSelector(const std::string& selector, const platform::Value& argument) override {
        if (selector == "title") return toStdString(text());
        if (selector == "isEnabled") return isEnabled();
        if (selector == "isSelected") return isSelected();
        if (selector == "isChecked") {
            QVariant state = checkState();
            return state.isValid() ? platform::Value(state.toInt() == Qt::Checked) : platform::Value();
        }
        return View::performSelector(selector, argument);
    }

    std::shared_ptr<platform::View> superview() const override { return owner_ ? viewFor(owner_) : nullptr; }
    std::vector<std::shared_ptr<platform::View>> subviews() const override { return {}; }
    std::shared_ptr<platform::Window> window() const override {
        auto owner = superview();
        return owner ? owner->window() : nullptr;
    }
    bool isHidden() const override { return !exists(); }

    platform::Rect frame() const override {
        if (!exists()) return {};
        QRect rect = rectInOwner();
        return {double(rect.x()), double(owner_->height() - (rect.y() + rect.height())), double(rect.width()),
                double(rect.height())};
    }
    platform::Rect bounds() const override {
        platform::Rect f = frame();
        return {0, 0, f.width(), f.height()};
    }
    platform::Rect visibleRect() const override {
        auto owner = superview();
        if (!owner || !exists()) return {};
        platform::Rect f = frame();
        platform::Rect clip = owner->visibleRect();
        double minX = std::max(f.minX(), clip.minX()), maxX = std::min(f.maxX(), clip.maxX());
        double minY = std::max(f.minY(), clip.minY()), maxY = std::min(f.maxY(), clip.maxY());
        if (maxX <= minX || maxY <= minY) return {};
        return {minX - f.minX(), minY - f.minY(), maxX - minX, maxY - minY};
    }
    platform::Rect convertRectToWindow(const platform::Rect& rect) const override {
        auto owner = superview();
        if (!owner) return rect;
        platform::Rect f = frame();
        return owner->convertRectToWindow({rect.minX() + f.minX(), rect.minY() + f.minY(), rect.width(), rect.height()});
    }
    platform::Value accessibilityValue() const override { return toStdString(text()); }

    bool exists() const {
        if (!owner_) return false;
        switch (kind_) {
            case PartKind::tab: {
                auto* bar = qobject_cast<QTabBar*>(owner_.data());
                return bar && tab_ < bar->count();
            }
            case PartKind::barTitle:
                return action_ && action_->isVisible() && owner_->actions().contains(action_.data());
            case PartKind::item:
                return itemView() && item_.isValid();
        }
        return false;
    }

private:
    QString text() const {
        if (!exists()) return {};
        switch (kind_) {
            case PartKind::tab:
                return withoutMnemonics(static_cast<QTabBar*>(owner_.data())->tabText(tab_));
            case PartKind::barTitle:
                return withoutMnemonics(action_->text());
            case PartKind::item:
                break;
        }
        return item_.data(Qt::DisplayRole).toString();
    }

    QRect rectInOwner() const {
        switch (kind_) {
            case PartKind::tab:
                return static_cast<QTabBar*>(owner_.data())->tabRect(tab_);
            case PartKind::barTitle:
                return static_cast<QMenuBar*>(owner_.data())->actionGeometry(action_);
            case PartKind::item:
                break;
        }
        return itemView()->visualRect(item_);
    }

    bool isEnabled() const {
        if (!exists()) return false;
        switch (kind_) {
            case PartKind::tab:
                return static_cast<QTabBar*>(owner_.data())->isTabEnabled(tab_);
            case PartKind::barTitle:
                return action_->isEnabled();
            case PartKind::item:
                break;
        }
        return item_.flags().testFlag(Qt::ItemIsEnabled);
    }

    bool isSelected() const {
        if (!exists()) return false;
        switch (kind_) {
            case PartKind::tab:
                return static_cast<QTabBar*>(owner_.data())->currentIndex() == tab_;
            case PartKind::barTitle:
                return static_cast<QMenuBar*>(owner_.data())->activeAction() == action_;
            case PartKind::item:
                break;
        }
        QItemSelectionModel* selection = itemView()->selectionModel();
        return selection && selection->isSelected(item_);
    }

    QVariant checkState() const {
        if (kind_ == PartKind::item && exists()) return item_.data(Qt::CheckStateRole);
        if (kind_ == PartKind::barTitle && exists() && action_->isCheckable()) return action_->isChecked() ? 2 : 0;
        return {};
    }

    QPointer<QWidget> owner_;
    PartKind kind_;
    int tab_;
    QPointer<QAction> action_;
    QPersistentModelIndex item_;
};

// The parts a widget's wrapper keeps, so that each stays the same view.
class PartCache : public platform::Object {
public:
    std::vector<std::shared_ptr<QtPart>> parts;
};

PartCache& cacheOf(QWidget* owner) {
    auto wrapper = WrapperRegistry::wrapperFor(owner, WrapperRole::parts, [] { return std::make_shared<PartCache>(); });
    return static_cast<PartCache&>(*wrapper);
}

// The rows of a model below a parent, the visible columns of each; a tree's
// expanded rows are followed by their children.
void collectItems(QAbstractItemView* view, const QModelIndex& parent, std::vector<QModelIndex>& items) {
    QAbstractItemModel* model = view->model();
    auto* tree = qobject_cast<QTreeView*>(view);
    auto* table = qobject_cast<QTableView*>(view);
    auto* list = qobject_cast<QListView*>(view);
    int columns = (tree || table) ? model->columnCount(parent) : 1;
    for (int row = 0; row < model->rowCount(parent) && items.size() < mostItems; ++row) {
        if ((tree && tree->isRowHidden(row, parent)) || (table && table->isRowHidden(row)) ||
            (list && list->isRowHidden(row)))
            continue;
        for (int column = 0; column < columns; ++column) {
            if ((tree && tree->isColumnHidden(column)) || (table && table->isColumnHidden(column))) continue;
            items.push_back(model->index(row, list ? list->modelColumn() : column, parent));
        }
        QModelIndex first = model->index(row, 0, parent);
        if (tree && tree->isExpanded(first)) collectItems(view, first, items);
    }
}

}  // namespace

std::vector<std::shared_ptr<platform::View>> partsOf(QWidget* widget) {
    if (!widget) return {};
    auto* tabBar = qobject_cast<QTabBar*>(widget);
    auto* menuBar = qobject_cast<QMenuBar*>(widget);
    auto* itemView = qobject_cast<QAbstractItemView*>(widget->parentWidget());
    if (itemView && (itemView->viewport() != widget || !itemView->model() || qobject_cast<QHeaderView*>(itemView)))
        itemView = nullptr;
    if (!tabBar && !menuBar && !itemView) return {};

    auto& cache = cacheOf(widget);
    std::vector<std::shared_ptr<QtPart>> kept;
    // A part that still stands for the same tab, title or item is reused.
    auto reuse = [&](auto&& same, PartKind kind, int tab, QAction* action, const QModelIndex& item) {
        for (auto& part : cache.parts)
            if (part && same(*part)) return kept.push_back(std::move(part));
        kept.push_back(std::make_shared<QtPart>(widget, kind, tab, action, item));
    };
    if (tabBar) {
        for (int tab = 0; tab < tabBar->count(); ++tab) {
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
            if (!tabBar->isTabVisible(tab)) continue;
#endif
            reuse([tab](const QtPart& part) { return part.tab() == tab; }, PartKind::tab, tab, nullptr, {});
        }
    } else if (menuBar) {
        for (QAction* action : menuBar->actions()) {
            if (!action->isVisible() || action->isSeparator()) continue;
            reuse([action](const QtPart& part) { return part.action() == action; }, PartKind::barTitle, -1, action, {});
        }
    } else {
        std::vector<QModelIndex> items;
        collectItems(itemView, itemView->rootIndex(), items);
        // Looked up by index: a long list would make a linear search slow.
        std::map<QModelIndex, std::shared_ptr<QtPart>> byIndex;
        for (auto& part : cache.parts)
            if (part && part->item().isValid()) byIndex.emplace(part->item(), part);
        cache.parts.clear();
        for (const QModelIndex& item : items) {
            auto found = byIndex.find(item);
            kept.push_back(found != byIndex.end() ? found->second
                                                  : std::make_shared<QtPart>(widget, PartKind::item, -1, nullptr, item));
        }
    }
    cache.parts = kept;
    return {kept.begin(), kept.end()};
}

QWidget* ownerOfPart(const platform::View& view) {
    auto* part = dynamic_cast<const QtPart*>(&view);
    return part ? part->owner() : nullptr;
}

bool scrollPartIntoView(const platform::View& view) {
    auto* part = dynamic_cast<const QtPart*>(&view);
    if (!part || !part->exists() || !part->itemView()) return false;
    part->itemView()->scrollTo(part->item());
    return true;
}

}  // namespace jtk::qt
