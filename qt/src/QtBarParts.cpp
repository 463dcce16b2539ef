// The tabs of a tab bar and the titles of a menu bar as parts.
#include <QAction>
#include <QMenuBar>
#include <QTabBar>

#include "QtObjectRuntime.h"
#include "QtPartKinds.h"

namespace jtk::qt {

namespace {

// A tab, by its index: it stays the same part while the bar has that many tabs.
class TabPart : public QtPart {
public:
    TabPart(QTabBar* bar, int tab) : QtPart(bar), tab_(tab) {}
    int tab() const { return tab_; }

    std::string className() const override { return "QTabBarTab"; }
    bool exists() const override { return bar() && tab_ < bar()->count(); }
    QString text() const override { return withoutMnemonics(bar()->tabText(tab_)); }
    QRect rectInOwner() const override { return bar()->tabRect(tab_); }
    bool enabled() const override { return bar()->isTabEnabled(tab_); }
    // The current tab.
    bool selected() const override { return bar()->currentIndex() == tab_; }
    QString toolTipText() const override { return bar()->tabToolTip(tab_); }

private:
    QTabBar* bar() const { return static_cast<QTabBar*>(owner()); }
    int tab_;
};

// A title of a menu bar, by its action.
class BarTitlePart : public QtPart {
public:
    BarTitlePart(QMenuBar* bar, QAction* action) : QtPart(bar), action_(action) {}
    QAction* action() const { return action_.data(); }

    std::string className() const override { return "QMenuBarItem"; }
    bool exists() const override {
        return owner() && action_ && action_->isVisible() && owner()->actions().contains(action_.data());
    }
    QString text() const override { return withoutMnemonics(action_->text()); }
    QRect rectInOwner() const override { return static_cast<QMenuBar*>(owner())->actionGeometry(action_); }
    bool enabled() const override { return action_->isEnabled(); }
    // Its menu is open.
    bool selected() const override { return static_cast<QMenuBar*>(owner())->activeAction() == action_; }
    std::optional<bool> checked() const override {
        return action_->isCheckable() ? std::optional<bool>(action_->isChecked()) : std::nullopt;
    }
    QString toolTipText() const override { return action_->toolTip(); }

private:
    QPointer<QAction> action_;
};

// The part of the previous list that the predicate accepts, else a new one.
template <class Kind, class Same, class Make>
std::shared_ptr<QtPart> kept(const PartList& previous, Same same, Make make) {
    for (const auto& part : previous)
        if (auto* kind = dynamic_cast<Kind*>(part.get()); kind && same(*kind)) return part;
    return make();
}

}  // namespace

PartList tabParts(QTabBar* bar, const PartList& previous) {
    PartList parts;
    for (int tab = 0; tab < bar->count(); ++tab) {
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
        if (!bar->isTabVisible(tab)) continue;
#endif
        parts.push_back(kept<TabPart>(
            previous, [tab](const TabPart& part) { return part.tab() == tab; },
            [&] { return std::make_shared<TabPart>(bar, tab); }));
    }
    return parts;
}

PartList barTitleParts(QMenuBar* bar, const PartList& previous) {
    PartList parts;
    for (QAction* action : bar->actions()) {
        if (!action->isVisible() || action->isSeparator()) continue;
        parts.push_back(kept<BarTitlePart>(
            previous, [action](const BarTitlePart& part) { return part.action() == action; },
            [&] { return std::make_shared<BarTitlePart>(bar, action); }));
    }
    return parts;
}

}  // namespace jtk::qt
