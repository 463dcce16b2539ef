#include "QtParts.h"

#include <QAbstractItemView>
#include <QColumnView>
#include <QHeaderView>
#include <QMenuBar>
#include <QTabBar>

#include "QtPartKinds.h"
#include "QtWrapperRegistry.h"

namespace jtk::qt {

namespace {

// The parts a widget's wrapper keeps, so that each stays the same view.
class PartCache : public platform::Object {
public:
    PartList parts;
};

PartCache& cacheOf(QWidget* owner) {
    auto wrapper = WrapperRegistry::wrapperFor(owner, WrapperRole::parts, [] { return std::make_shared<PartCache>(); });
    return static_cast<PartCache&>(*wrapper);
}

// The item view or header whose viewport the widget is; null otherwise. A
// column view has no items of its own: each column is a list view of its own.
QAbstractItemView* itemViewOfViewport(QWidget* widget) {
    auto* view = qobject_cast<QAbstractItemView*>(widget->parentWidget());
    if (!view || view->viewport() != widget || !view->model() || qobject_cast<QColumnView*>(view)) return nullptr;
    return view;
}

}  // namespace

std::vector<std::shared_ptr<platform::View>> partsOf(QWidget* widget) {
    if (!widget) return {};
    auto* tabBar = qobject_cast<QTabBar*>(widget);
    auto* menuBar = qobject_cast<QMenuBar*>(widget);
    QAbstractItemView* itemView = tabBar || menuBar ? nullptr : itemViewOfViewport(widget);
    if (!tabBar && !menuBar && !itemView) return {};

    auto& cache = cacheOf(widget);
    if (tabBar) cache.parts = tabParts(tabBar, cache.parts);
    else if (menuBar) cache.parts = barTitleParts(menuBar, cache.parts);
    else if (auto* header = qobject_cast<QHeaderView*>(itemView)) cache.parts = sectionParts(header, cache.parts);
    else cache.parts = itemParts(itemView, cache.parts);
    return {cache.parts.begin(), cache.parts.end()};
}

QWidget* ownerOfPart(const platform::View& view) {
    auto* part = dynamic_cast<const QtPart*>(&view);
    return part ? part->owner() : nullptr;
}

bool scrollPartIntoView(platform::View& view) {
    auto* part = dynamic_cast<QtPart*>(&view);
    return part && part->scrollIntoView();
}

}  // namespace jtk::qt
