// The screenshot store as the review tool reads it, without a desktop:
//
//   ROOT/VERSION/TEST/VIEW.png              an accepted image
//   ROOT/VERSION/TEST/temp/VIEW.png         a pending capture (it differed)
//   ROOT/VERSION/TEST/.jtk-captured         the files the last run captured
//
// The captured list is UTF-8 text, one file name per line, written by a run
// after each test's capture. A folder without it was not captured by a run
// that records it, so nothing in it can be called stale.
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace jtk::review {

inline constexpr const char* capturedListName = ".jtk-captured";
inline constexpr const char* pendingFolderName = "temp";

struct TestFolder {
    std::string tag;  // the folder's name: the test's name with every "test" removed
    std::filesystem::path folder;
    std::vector<std::string> accepted;              // the .png files of the folder, name order
    std::vector<std::string> pending;               // the files of its temp folder, name order
    std::optional<std::set<std::string>> captured;  // the captured list; none without one
    std::string capturedError;                      // why an existing list could not be read

    std::filesystem::path pendingFolder() const { return folder / pendingFolderName; }
    bool isAccepted(const std::string& file) const;
    // Accepted and pending files that the last run did not capture; empty
    // without a captured list.
    std::vector<std::string> staleAccepted() const;
    std::vector<std::string> stalePending() const;
};

// A test's tag: its name with every "test" removed (testContestEntry gives ConEntry).
std::string testTag(const std::string& testName);

// The test folders of a version folder, in name order; hidden folders and
// files are skipped. A folder that cannot be listed counts as empty.
std::vector<TestFolder> scanVersionFolder(const std::filesystem::path& versionFolder);

// The captured list of a test folder: none when it does not exist; none with
// a reason in error when it cannot be read. Blank lines are ignored and a
// line's trailing carriage return is dropped.
std::optional<std::set<std::string>> readCapturedList(const std::filesystem::path& testFolder, std::string* error);

// The version folders of a root as "\"12\", \"13\"", or "none".
std::string versionsIn(const std::filesystem::path& root);

// What a command works on: every test, one test or one pending image of one test.
struct Selection {
    std::optional<std::string> test;   // a tag or a test name ("Save" or "testSave")
    std::optional<std::string> image;  // a file name, with or without ".png"
};

// The folders a selection names; with an image, that test's pending list
// holds just it. None, with a message naming what is missing and what there
// is instead, when the test or the pending image does not exist.
std::optional<std::vector<TestFolder>> selectTests(const std::filesystem::path& versionFolder,
                                                   const Selection& selection, std::string* error);

}  // namespace jtk::review
