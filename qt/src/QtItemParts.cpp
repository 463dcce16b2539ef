// The items of an item view and the sections of a header view as parts.
#include <QAbstractItemView>
#include <QComboBox>
#include <QHeaderView>
#include <QListView>
#include <QListWidget>
#include <QPersistentModelIndex>
#include <QTableView>
#include <QTableWidget>
#include <QTreeView>
#include <QTreeWidget>
#include <algorithm>
#include <map>

#include "QtObjectRuntime.h"
#include "QtPartKinds.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

// An item, by its model index: it stays the same part while the index
// exists. Its owner is the item view's viewport.
class ItemPart : public QtPart {
public:
    ItemPart(QWidget* viewport, const QModelIndex& item) : QtPart(viewport), item_(item) {}
    QModelIndex item() const { return item_; }

    std::string className() const override {
        QAbstractItemView* view = itemView();
        if (view && comboOfPopup(view->window())) return "QComboBoxItem";
        if (qobject_cast<QListWidget*>(view)) return "QListWidgetItem";
        if (qobject_cast<QTableWidget*>(view)) return "QTableWidgetItem";
        if (qobject_cast<QTreeWidget*>(view)) return "QTreeWidgetItem";
        return "QModelIndex";
    }
    // Only while its row and column are shown: a collapsed tree row, a
    // hidden row or column, is not there to find or click.
    bool exists() const override { return itemView() && item_.isValid() && isShown(); }
    QString text() const override { return item_.data(Qt::DisplayRole).toString(); }
    QRect rectInOwner() const override { return itemView()->visualRect(item_); }
    bool enabled() const override { return item_.flags().testFlag(Qt::ItemIsEnabled); }
    bool selected() const override {
        QItemSelectionModel* selection = itemView()->selectionModel();
        return selection && selection->isSelected(item_);
    }
    std::optional<bool> checked() const override {
        QVariant state = item_.data(Qt::CheckStateRole);
        return state.isValid() ? std::optional<bool>(state.toInt() == Qt::Checked) : std::nullopt;
    }
    QString toolTipText() const override { return item_.data(Qt::ToolTipRole).toString(); }
    bool scrollIntoView() override {
        if (!exists()) return false;
        itemView()->scrollTo(item_);
        return true;
    }

private:
    QAbstractItemView* itemView() const {
        return owner() ? qobject_cast<QAbstractItemView*>(owner()->parentWidget()) : nullptr;
    }

    bool isShown() const {
        QAbstractItemView* view = itemView();
        if (auto* tree = qobject_cast<QTreeView*>(view)) {
            if (tree->isColumnHidden(item_.column())) return false;
            for (QModelIndex row = item_; row.isValid() && row != tree->rootIndex(); row = row.parent()) {
                if (tree->isRowHidden(row.row(), row.parent())) return false;
                if (row.parent().isValid() && row.parent() != tree->rootIndex() && !tree->isExpanded(row.parent()))
                    return false;
            }
            return true;
        }
        if (auto* table = qobject_cast<QTableView*>(view))
            return !table->isRowHidden(item_.row()) && !table->isColumnHidden(item_.column());
        if (auto* list = qobject_cast<QListView*>(view)) return !list->isRowHidden(item_.row());
        return true;
    }

    QPersistentModelIndex item_;
};

// A header section, by its logical index.
class SectionPart : public QtPart {
public:
    SectionPart(QWidget* viewport, int section) : QtPart(viewport), section_(section) {}
    int section() const { return section_; }

    std::string className() const override { return "QHeaderViewSection"; }
    bool exists() const override {
        QHeaderView* view = header();
        return view && view->model() && section_ < view->count() && !view->isSectionHidden(section_);
    }
    QString text() const override { return data(Qt::DisplayRole).toString(); }
    QRect rectInOwner() const override {
        QHeaderView* view = header();
        int position = view->sectionViewportPosition(section_), size = view->sectionSize(section_);
        return view->orientation() == Qt::Horizontal ? QRect(position, 0, size, owner()->height())
                                                     : QRect(0, position, owner()->width(), size);
    }
    bool enabled() const override { return header()->isEnabled(); }
    // The sort indicator is on this section.
    bool selected() const override {
        return header()->isSortIndicatorShown() && header()->sortIndicatorSection() == section_;
    }
    QString toolTipText() const override { return data(Qt::ToolTipRole).toString(); }
    // Scrolls the table or tree to the section's column (or row), keeping
    // the rows (columns) it shows.
    bool scrollIntoView() override {
        auto* view = exists() ? qobject_cast<QAbstractItemView*>(header()->parentWidget()) : nullptr;
        QAbstractItemModel* model = view ? view->model() : nullptr;
        if (!model) return false;
        QModelIndex shown = view->indexAt(QPoint(1, 1));
        bool horizontal = header()->orientation() == Qt::Horizontal;
        int row = horizontal ? std::max(shown.row(), 0) : section_;
        int column = horizontal ? section_ : std::max(shown.column(), 0);
        if (row >= model->rowCount(view->rootIndex()) || column >= model->columnCount(view->rootIndex())) return false;
        view->scrollTo(model->index(row, column, view->rootIndex()));
        return true;
    }

    bool respondsToSelector(const std::string& selector) const override {
        return selector == "sortOrder" || QtPart::respondsToSelector(selector);
    }
    // "ascending" or "descending" on the section that bears the sort indicator; none on the others.
    platform::Value performSelector(const std::string& selector, const platform::Value& argument = {}) override {
        if (selector != "sortOrder") return QtPart::performSelector(selector, argument);
        if (!exists() || !selected()) return {};
        return header()->sortIndicatorOrder() == Qt::AscendingOrder ? "ascending" : "descending";
    }

private:
    QHeaderView* header() const { return owner() ? qobject_cast<QHeaderView*>(owner()->parentWidget()) : nullptr; }
    QVariant data(int role) const { return header()->model()->headerData(section_, header()->orientation(), role); }

    int section_;
};

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

PartList itemParts(QAbstractItemView* view, const PartList& previous) {
    std::vector<QModelIndex> items;
    collectItems(view, view->rootIndex(), items);
    // Looked up by index: a long list would make a linear search slow.
    std::map<QModelIndex, std::shared_ptr<QtPart>> byIndex;
    for (const auto& part : previous)
        if (auto* item = dynamic_cast<ItemPart*>(part.get()); item && item->item().isValid())
            byIndex.emplace(item->item(), part);
    PartList parts;
    parts.reserve(items.size());
    for (const QModelIndex& item : items) {
        auto found = byIndex.find(item);
        parts.push_back(found != byIndex.end() ? found->second : std::make_shared<ItemPart>(view->viewport(), item));
    }
    return parts;
}

PartList sectionParts(QHeaderView* header, const PartList& previous) {
    std::map<int, std::shared_ptr<QtPart>> bySection;
    for (const auto& part : previous)
        if (auto* section = dynamic_cast<SectionPart*>(part.get())) bySection.emplace(section->section(), part);
    PartList parts;
    for (int visual = 0; visual < header->count() && parts.size() < mostItems; ++visual) {
        int section = header->logicalIndex(visual);
        if (section < 0 || header->isSectionHidden(section)) continue;
        auto found = bySection.find(section);
        parts.push_back(found != bySection.end() ? found->second
                                                 : std::make_shared<SectionPart>(header->viewport(), section));
    }
    return parts;
}

}  // namespace jtk::qt
