// Accept, discard and prune: single renames and unlinks, one line per file.
#include "JTK/review/StoreChanges.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace jtk::review {

namespace {

std::string line(const char* what, const TestFolder& test, const std::string& file) {
    return std::string(what) + "\t" + test.tag + "\t" + file;
}

std::string failure(const char* action, const fs::path& path) {
    return std::string("cannot ") + action + " " + path.string() + ": " + std::strerror(errno);
}

// Removes the temp folder when nothing at all is left in it (hidden files
// included); a folder with something in it stays.
void removeEmptyPendingFolder(const TestFolder& test) {
    std::error_code ignored;
    if (fs::is_empty(test.pendingFolder(), ignored) && !ignored) fs::remove(test.pendingFolder(), ignored);
}

ChangeCounts removeEach(const TestFolder& test, const std::vector<std::string>& files, bool pending,
                        const char* what, const LineSink& say, ChangeCounts counts) {
    for (const auto& file : files) {
        fs::path path = (pending ? test.pendingFolder() : test.folder) / file;
        if (std::remove(path.c_str()) != 0) {
            counts.errors.push_back(failure("remove", path));
            continue;
        }
        say(line(what, test, pending ? std::string(pendingFolderName) + "/" + file : file));
        ++counts.done;
    }
    return counts;
}

}  // namespace

ChangeCounts acceptPending(const std::vector<TestFolder>& tests, const LineSink& say) {
    ChangeCounts counts;
    for (const auto& test : tests) {
        for (const auto& file : test.pending) {
            fs::path from = test.pendingFolder() / file;
            if (std::rename(from.c_str(), (test.folder / file).c_str()) != 0) {
                counts.errors.push_back(failure("accept", from));
                continue;
            }
            say(line("accepted", test, file));
            ++counts.done;
        }
        if (!test.pending.empty()) removeEmptyPendingFolder(test);
    }
    return counts;
}

ChangeCounts discardPending(const std::vector<TestFolder>& tests, const LineSink& say) {
    ChangeCounts counts;
    for (const auto& test : tests) {
        counts = removeEach(test, test.pending, true, "discarded", say, std::move(counts));
        if (!test.pending.empty()) removeEmptyPendingFolder(test);
    }
    return counts;
}

ChangeCounts prune(const std::vector<TestFolder>& tests, PruneMode mode, const LineSink& say) {
    ChangeCounts counts;
    for (const auto& test : tests) {
        if (!test.captured) {
            std::string reason = test.capturedError.empty()
                                     ? std::string("no ") + capturedListName + ", left alone"
                                     : test.capturedError + ", left alone";
            say("not recorded\t" + test.tag + "\t" + reason);
            continue;
        }
        auto accepted = test.staleAccepted(), pending = test.stalePending();
        if (mode == PruneMode::list) {
            for (const auto& file : accepted) say(line("stale", test, file));
            for (const auto& file : pending) say(line("stale", test, std::string(pendingFolderName) + "/" + file));
            counts.done += int(accepted.size() + pending.size());
            continue;
        }
        counts = removeEach(test, accepted, false, "removed", say, std::move(counts));
        counts = removeEach(test, pending, true, "removed", say, std::move(counts));
        if (!pending.empty()) removeEmptyPendingFolder(test);
    }
    return counts;
}

}  // namespace jtk::review
