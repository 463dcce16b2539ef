// Reading the screenshot store: test folders, their images and captured lists.
#include "JTK/review/ScreenshotStore.h"

#include <algorithm>
#include <fstream>

namespace fs = std::filesystem;

namespace jtk::review {

namespace {

enum class Kind { folder, file };

// The names of a folder's entries of one kind (symbolic links are not
// followed), hidden ones skipped, in byte order; empty when it cannot be listed.
std::vector<std::string> namesIn(const fs::path& folder, Kind kind) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        std::string name = it->path().filename().string();
        std::error_code statusError;
        auto status = it->symlink_status(statusError);
        bool wanted = kind == Kind::folder ? fs::is_directory(status) : fs::is_regular_file(status);
        if (!statusError && wanted && !name.starts_with(".")) names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string quotedList(const std::vector<std::string>& names) {
    std::string text;
    for (const auto& name : names) text += (text.empty() ? "\"" : ", \"") + name + "\"";
    return text.empty() ? "none" : text;
}

TestFolder readTestFolder(const fs::path& folder) {
    TestFolder test;
    test.tag = folder.filename().string();
    test.folder = folder;
    for (auto& name : namesIn(folder, Kind::file))
        if (name.ends_with(".png")) test.accepted.push_back(std::move(name));
    test.pending = namesIn(folder / pendingFolderName, Kind::file);
    test.captured = readCapturedList(folder, &test.capturedError);
    return test;
}

std::vector<std::string> notCaptured(const std::vector<std::string>& files,
                                     const std::optional<std::set<std::string>>& captured) {
    std::vector<std::string> stale;
    if (captured)
        for (const auto& file : files)
            if (!captured->contains(file)) stale.push_back(file);
    return stale;
}

}  // namespace

bool TestFolder::isAccepted(const std::string& file) const {
    return std::binary_search(accepted.begin(), accepted.end(), file);
}

std::vector<std::string> TestFolder::staleAccepted() const { return notCaptured(accepted, captured); }

std::vector<std::string> TestFolder::stalePending() const { return notCaptured(pending, captured); }

std::string testTag(const std::string& testName) {
    std::string tag;
    for (size_t at = 0; at < testName.size();) {
        if (testName.compare(at, 4, "test") == 0) {
            at += 4;
        } else {
            tag += testName[at++];
        }
    }
    return tag;
}

std::vector<TestFolder> scanVersionFolder(const fs::path& versionFolder) {
    std::vector<TestFolder> tests;
    for (const auto& name : namesIn(versionFolder, Kind::folder)) tests.push_back(readTestFolder(versionFolder / name));
    return tests;
}

std::optional<std::set<std::string>> readCapturedList(const fs::path& testFolder, std::string* error) {
    fs::path path = testFolder / capturedListName;
    std::error_code statusError;
    auto status = fs::status(path, statusError);
    if (!fs::exists(status)) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!fs::is_regular_file(status) || !in) {
        if (error) *error = path.string() + ": cannot be read";
        return std::nullopt;
    }
    std::set<std::string> names;
    for (std::string line; std::getline(in, line);) {
        if (line.ends_with('\r')) line.pop_back();
        if (!line.empty()) names.insert(line);
    }
    if (in.bad()) {
        if (error) *error = path.string() + ": cannot be read";
        return std::nullopt;
    }
    return names;
}

std::string versionsIn(const fs::path& root) { return quotedList(namesIn(root, Kind::folder)); }

std::optional<std::vector<TestFolder>> selectTests(const fs::path& versionFolder, const Selection& selection,
                                                   std::string* error) {
    auto tests = scanVersionFolder(versionFolder);
    if (!selection.test) return tests;
    auto named = [&](const std::string& tag) {
        return std::find_if(tests.begin(), tests.end(), [&](const TestFolder& test) { return test.tag == tag; });
    };
    auto match = named(*selection.test);
    if (match == tests.end()) match = named(testTag(*selection.test));
    if (match == tests.end()) {
        std::vector<std::string> tags;
        for (const auto& test : tests) tags.push_back(test.tag);
        *error = "no test \"" + *selection.test + "\" in " + versionFolder.string() + " (tests there: " +
                 quotedList(tags) + ")";
        return std::nullopt;
    }
    TestFolder test = *match;
    if (selection.image) {
        auto& pending = test.pending;
        auto image = std::find(pending.begin(), pending.end(), *selection.image);
        if (image == pending.end()) image = std::find(pending.begin(), pending.end(), *selection.image + ".png");
        if (image == pending.end()) {
            *error = "no pending image \"" + *selection.image + "\" in test \"" + test.tag +
                     "\" (pending there: " + quotedList(pending) + ")";
            return std::nullopt;
        }
        pending = {*image};
    }
    return std::vector<TestFolder>{std::move(test)};
}

}  // namespace jtk::review
