// One search's reading of the live view trees. A pass is made, used and
// dropped inside a single main-thread step, so a whole search costs one hop
// from the test queue, and each view is read once per search: its screen
// frame serves both the reading order and the default lookup description, its
// name both the lookup description and the lookup test. Nothing outlives the
// step: the next search reads every view afresh.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "JTK/JTKClass.h"
#include "JTK/JTKElement.h"
#include "JTK/platform/Geometry.h"
#include "JTK/platform/View.h"

namespace jtk {

class JTKSearchPass {
public:
    // All of these run on the main thread only.

    // The content views of all windows in window-list order. A window without
    // a content view has nothing to search and is left out.
    static std::vector<std::shared_ptr<platform::View>> windowContentViews();
    // The walks of all windows' content views, in reading order.
    static JTKSearchPass windowsInReadingOrder();
    // The same, followed by each window's content view once more: the
    // application's elements end with the window elements.
    static JTKSearchPass applicationElements();
    // The walk of one view, in walk order, starting with the view itself.
    static JTKSearchPass walk(const std::shared_ptr<platform::View>& view);

    std::vector<std::shared_ptr<platform::View>> views() const;
    // A new element for each view of type (by the type-name rule; every view
    // without a type), in order.
    std::vector<JTKElement> elements(const std::optional<JTKClass>& type = std::nullopt) const;
    // New elements of the views that pass the type-name rule for type (when
    // one is given) and match lookup, in order; at most limit of them.
    std::vector<JTKElement> matches(const std::string& lookup, const std::optional<JTKClass>& type = std::nullopt,
                                    size_t limit = std::numeric_limits<size_t>::max()) const;

private:
    struct Candidate {
        std::shared_ptr<platform::View> view;  // held for the length of the search
        platform::Rect screenFrame;
    };

    JTKSearchPass() = default;
    void addWalk(const std::shared_ptr<platform::View>& root);
    void add(std::shared_ptr<platform::View> view);
    void sortInReadingOrder();
    static bool passes(const Candidate& candidate, const std::optional<JTKClass>& type);
    static JTKElement makeElement(const Candidate& candidate, const std::string& name);

    std::vector<Candidate> candidates_;
};

}  // namespace jtk
