// Gathering the report: the store's folders, the JUnit cases matched to them
// by tag, the pictures read and compared.
#include "JTK/review/ReportContents.h"

#include <algorithm>
#include <exception>
#include <map>
#include <span>

#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"
#include "JTK/review/AtomicFile.h"

namespace fs = std::filesystem;

namespace jtk::review {

namespace {

std::span<const uint8_t> bytesOf(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// The file's bytes when it is a PNG file (its header checked), else why not.
Picture readPicture(const fs::path& path) {
    Picture picture;
    if (!readWholeFile(path, picture.png, &picture.error)) return picture;
    std::string reason;
    if (!imaging::readPNGHeader(bytesOf(picture.png), &reason)) {
        picture.error = path.string() + ": " + reason;
        picture.png.clear();
    }
    return picture;
}

template <class Image, class Decode>
void compareDecoded(PendingPair& pair, Decode decode) {
    std::string error;
    std::optional<Image> accepted = decode(bytesOf(pair.accepted->png), &error);
    if (!accepted) {
        pair.accepted->error = error, pair.accepted->png.clear();
        return;
    }
    std::optional<Image> pending = decode(bytesOf(pair.pending.png), &error);
    if (!pending) {
        pair.pending.error = error, pair.pending.png.clear();
        return;
    }
    pair.pixels = uint64_t(accepted->width) * accepted->height;
    if (accepted->width != pending->width || accepted->height != pending->height)
        pair.sizes = std::to_string(accepted->width) + "x" + std::to_string(accepted->height) + " and " +
                     std::to_string(pending->width) + "x" + std::to_string(pending->height);
    auto picture = imaging::imageDifferencePNG(*accepted, *pending, &pair.differingPixels);
    if (pair.differingPixels == 0 && pair.sizes.empty()) return;
    if (picture.empty()) pair.difference.error = "the difference picture cannot be encoded";
    pair.difference.png.assign(picture.begin(), picture.end());
}

PendingPair readPair(const TestFolder& test, const std::string& file) {
    PendingPair pair;
    pair.file = file;
    pair.pendingPath = test.pendingFolder() / file;
    pair.pending = readPicture(pair.pendingPath);
    if (test.isAccepted(file)) pair.accepted = readPicture(test.folder / file);
    try {
        comparePictures(pair);
    } catch (const std::exception& failure) {  // out of memory for a huge picture
        pair.difference = {{}, std::string("the pictures cannot be compared: ") + failure.what()};
    }
    return pair;
}

ReportTest fromFolder(const TestFolder& folder) {
    ReportTest test;
    test.tag = folder.tag;
    test.hasFolder = true;
    test.accepted = folder.accepted.size();
    test.recorded = folder.captured.has_value();
    test.stale = folder.staleAccepted();
    for (const auto& file : folder.stalePending()) test.stale.push_back(std::string(pendingFolderName) + "/" + file);
    for (const auto& file : folder.pending) test.pairs.push_back(readPair(folder, file));
    return test;
}

// The path as a canonical one where it exists, for matching attachments to
// pending captures whatever the spelling.
fs::path normal(const fs::path& path) {
    std::error_code ignored;
    auto canonical = fs::weakly_canonical(path, ignored);
    return ignored ? path.lexically_normal() : canonical;
}

void attach(ReportTest& test, const std::string& path) {
    for (const auto& other : test.attachments)
        if (other.path == path) return;
    AttachedPicture attached{path, {}, {}};
    fs::path where = normal(path);
    for (const auto& pair : test.pairs)
        if (normal(pair.pendingPath) == where) attached.pairFile = pair.file;
    if (attached.pairFile.empty()) attached.picture = readPicture(path);
    test.attachments.push_back(std::move(attached));
}

}  // namespace

void comparePictures(PendingPair& pair) {
    if (!pair.accepted || pair.accepted->png.empty() || pair.pending.png.empty()) return;
    std::string ignored;
    auto acceptedHeader = imaging::readPNGHeader(bytesOf(pair.accepted->png), &ignored);
    auto pendingHeader = imaging::readPNGHeader(bytesOf(pair.pending.png), &ignored);
    bool wide = (acceptedHeader && acceptedHeader->bitDepth == 16) || (pendingHeader && pendingHeader->bitDepth == 16);
    if (wide)
        compareDecoded<imaging::Image16>(pair, [](auto bytes, auto* error) { return imaging::decodePNG16(bytes, error); });
    else
        compareDecoded<imaging::Image>(pair, [](auto bytes, auto* error) { return imaging::decodePNG(bytes, error); });
}

ReportContents gatherReport(const fs::path& root, const std::string& version, std::optional<JUnitResults> junit,
                            std::optional<fs::path> junitFile) {
    ReportContents report{root, version, std::move(junitFile), std::move(junit), false, {}};
    std::error_code ignored;
    report.hasVersionFolder = fs::is_directory(root / version, ignored);
    std::vector<ReportTest> folders;
    for (const auto& folder : scanVersionFolder(root / version)) folders.push_back(fromFolder(folder));
    std::map<std::string, size_t> byTag;  // tag to index in report.tests
    auto testFor = [&](const std::string& tag) -> ReportTest& {
        auto [at, added] = byTag.try_emplace(tag, report.tests.size());
        if (added) {
            auto folder = std::find_if(folders.begin(), folders.end(),
                                       [&](const auto& test) { return test.hasFolder && test.tag == tag; });
            if (folder == folders.end()) {
                ReportTest test;
                test.tag = tag;
                report.tests.push_back(std::move(test));
            } else {
                report.tests.push_back(std::move(*folder));
                folder->hasFolder = false;  // taken
            }
        }
        return report.tests[at->second];
    };
    if (report.junit)
        for (const auto& testCase : report.junit->cases) {
            auto& test = testFor(testTag(testCase.name));
            test.results.push_back(testCase);
            for (const auto& path : testCase.attachments) attach(test, path);
        }
    for (auto& folder : folders)
        if (folder.hasFolder) testFor(folder.tag);
    return report;
}

}  // namespace jtk::review
