#include "QtWrappers.h"

#include <QWidget>

#include "QtViews.h"
#include "QtWindows.h"
#include "QtWrapperRegistry.h"

namespace jtk::qt {

std::shared_ptr<platform::View> viewFor(QWidget* widget) {
    auto wrapper = WrapperRegistry::wrapperFor(widget, WrapperRole::view, [widget] {
        return std::make_shared<QtView>(widget);
    });
    return std::static_pointer_cast<platform::View>(wrapper);
}

std::shared_ptr<platform::Window> windowFor(QWidget* topLevel) {
    if (!topLevel || !topLevel->isWindow()) return nullptr;
    auto wrapper = WrapperRegistry::wrapperFor(topLevel, WrapperRole::window, [topLevel] {
        return std::make_shared<QtWindow>(topLevel);
    });
    return std::static_pointer_cast<platform::Window>(wrapper);
}

QWidget* widgetOf(const platform::View& view) {
    auto* qtView = dynamic_cast<const QtView*>(&view);
    return qtView ? qtView->widget() : nullptr;
}

}  // namespace jtk::qt
