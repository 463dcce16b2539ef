// What the HTML report of a screenshot root shows, gathered from the store
// and the run's JUnit results: per test its result, its failure pictures and
// each pending capture with its accepted image and difference picture.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "JTK/review/JUnitResults.h"
#include "JTK/review/ScreenshotStore.h"

namespace jtk::review {

// A picture to embed: PNG bytes, or why there are none.
struct Picture {
    std::string png;
    std::string error;
};

// A pending capture beside its accepted image.
struct PendingPair {
    std::string file;
    std::filesystem::path pendingPath;
    std::optional<Picture> accepted;  // none when the test folder has no such image
    Picture pending;
    Picture difference;           // empty without an accepted image or when no pixel differs
    uint64_t differingPixels = 0;  // marked in the difference picture
    uint64_t pixels = 0;           // of the accepted image
    std::string sizes;             // "WxH and WxH" when the sizes differ
};

struct AttachedPicture {
    std::string path;
    Picture picture;       // empty when it is a pending capture shown with the test's pairs
    std::string pairFile;  // that pending capture's file name
};

struct ReportTest {
    std::string tag;
    std::vector<JUnitCase> results;  // the JUnit cases of this tag (none without a JUnit file)
    bool hasFolder = false;
    size_t accepted = 0;
    std::vector<std::string> stale;  // accepted and pending ("temp/NAME") files not captured last
    bool recorded = false;           // the folder has a captured list
    std::vector<PendingPair> pairs;
    std::vector<AttachedPicture> attachments;
};

struct ReportContents {
    std::filesystem::path root;
    std::string version;
    std::optional<std::filesystem::path> junitFile;
    std::optional<JUnitResults> junit;
    bool hasVersionFolder = false;  // ROOT/VERSION exists
    // Tests in run order when there are JUnit results (store folders that
    // the file does not name follow, in name order), else in name order.
    std::vector<ReportTest> tests;
};

// The pixels of two PNG files compared as jtk-diff does (at 16 bits when
// either has 16-bit samples), with the difference picture.
void comparePictures(PendingPair& pair);

ReportContents gatherReport(const std::filesystem::path& root, const std::string& version,
                            std::optional<JUnitResults> junit, std::optional<std::filesystem::path> junitFile);

}  // namespace jtk::review
