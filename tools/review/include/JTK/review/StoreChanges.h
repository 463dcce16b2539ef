// Changing the screenshot store from the command line: accepting pending
// captures, discarding them, and removing accepted images that the last run
// no longer produced. Every change is one rename or one unlink, so the store
// is never left with half a file: an accepted image is the old one or the
// whole new one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "JTK/review/ScreenshotStore.h"

namespace jtk::review {

// Told one line per file done (or, for a list, found), tab-separated: what,
// test tag, file name; pending files appear as "temp/NAME".
using LineSink = std::function<void(const std::string& line)>;

struct ChangeCounts {
    int done = 0;                     // files accepted, discarded, listed or removed
    std::vector<std::string> errors;  // one line each for what could not be done
};

// Moves each pending capture of the tests over the accepted image of the
// same name ("accepted"), then removes each temp folder that is left empty.
ChangeCounts acceptPending(const std::vector<TestFolder>& tests, const LineSink& say);

// Removes each pending capture of the tests ("discarded") and each temp
// folder that is left empty.
ChangeCounts discardPending(const std::vector<TestFolder>& tests, const LineSink& say);

// The accepted and pending images of tests with a captured list that the
// last run did not capture: listed ("stale") or removed ("removed"), and
// emptied temp folders removed. A test without a captured list is left
// alone and said so ("not recorded", its tag and a reason).
enum class PruneMode { list, remove };
ChangeCounts prune(const std::vector<TestFolder>& tests, PruneMode mode, const LineSink& say);

}  // namespace jtk::review
