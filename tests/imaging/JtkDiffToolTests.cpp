// jtk-diff as a person runs it: a child process, its exit status, its one
// line on standard output or standard error, and the picture it leaves.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <zlib.h>

#include <algorithm>

#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"
#include "tests/support/TestFiles.h"

using namespace jtk::imaging;
using namespace testsupport;

namespace {

std::string asText(const std::vector<uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

// The accepted picture of every case: 3x2, 8 bits.
Image acceptedImage() {
    Image accepted(3, 2);
    for (size_t i = 0; i < accepted.pixels.size(); ++i) accepted.pixels[i] = uint8_t(i * 40);
    return accepted;
}

// The second file of each case, made from the accepted picture.
std::vector<uint8_t> otherFile(const std::string& name) {
    Image accepted = acceptedImage();
    auto good = encodePNG(accepted);
    Image16 wide = *decodePNG16(good);  // the same values at 16 bits
    if (name == "equalValuesAt16Bits") return encodePNG(wide);
    if (name == "alphaOnly") return accepted.pixel(2, 1)[3] ^= 1, encodePNG(accepted);
    if (name == "onlyTheLowByteAt16Bits") return wide.pixel(1, 0)[0] += 1, encodePNG(wide);
    if (name == "otherSize" || name == "noPictureAsked") return encodePNG(Image(4, 2));
    if (name == "unwritablePicture" || name == "pictureOverAFolder") return encodePNG(Image(3, 2));  // differs, so a picture is due
    if (name == "notPNG" || name == "identicalButNotPNG") return {'h', 'e', 'l', 'l', 'o', '\n', 'x', 'y', 'z'};
    if (name == "empty") return {};
    if (name == "truncated") return std::vector<uint8_t>(good.begin(), good.begin() + long(good.size() / 2));
    if (name == "badChecksum") return good[good.size() - 20] ^= 0x40, good;  // inside the image data
    if (name == "damagedChunkType") return good[40] = 0xab, good;  // "IDAT" damaged: the checksum fails
    if (name == "criticalChunkWithNewline") {  // "A\nBC" before the end chunk, checksum right
        std::vector<uint8_t> chunk{0, 0, 0, 0, 'A', '\n', 'B', 'C'};
        uint32_t crc = uint32_t(crc32(0, chunk.data() + 4, 4));
        for (int i = 0; i < 4; ++i) chunk.push_back(uint8_t(crc >> (24 - 8 * i)));
        good.insert(good.end() - 12, chunk.begin(), chunk.end());
    }
    if (name == "unsupportedDepth") {  // RGB at 3 bits, with a right checksum
        good[24] = 3, good[25] = 2;
        uint32_t crc = uint32_t(crc32(0, good.data() + 12, 17));
        for (int i = 0; i < 4; ++i) good[29 + i] = uint8_t(crc >> (24 - 8 * i));
    }
    return good;
}

struct Case {
    const char* name;
    std::string arguments;  // {good} the accepted file, {other} the case's file, {picture} the picture's path;
                            // {unwritable} a path in a missing folder, {folder} a folder
    int status;
    std::string out;
    std::string error;  // part of the one line on standard error, for status 2
};

class JtkDiff : public testing::TestWithParam<Case> {
protected:
    std::string path(const std::string& name) const { return (folder_.path / name).string(); }

    ScratchFolder folder_;
};

// The picture, when the pixels differ, is the library's difference of the
// two files as decoded at 16 bits (exact for 8-bit files too); nothing is
// written otherwise, not even a temporary file.
TEST_P(JtkDiff, answersWithStatusLineAndPicture) {
    const Case& c = GetParam();
    writeFile(path("a.png"), asText(encodePNG(acceptedImage())));
    writeFile(path("o.png"), asText(otherFile(c.name)));
    fs::create_directory(path("folder"));
    std::string arguments = c.arguments;
    for (auto [placeholder, file] :
         {std::pair{"{good}", "a.png"}, {"{other}", "o.png"}, {"{picture}", "d.png"}, {"{unwritable}", "no/d.png"},
          {"{folder}", "folder"}}) {
        for (size_t at; (at = arguments.find(placeholder)) != std::string::npos;) {
            arguments.replace(at, std::string(placeholder).size(), quoted(path(file)));
        }
    }
    std::string command = quoted((binDirectory() / "jtk-diff").string()) + " " + arguments + " >" +
                          quoted(path("out")) + " 2>" + quoted(path("err"));
    int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), c.status);
    EXPECT_EQ(readFile(path("out")), c.out);
    std::string error = readFile(path("err"));
    if (c.status == 2) {
        EXPECT_NE(error.find(c.error), std::string::npos) << error;
        EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), 1) << error;
    } else {
        EXPECT_EQ(error, "");
    }
    bool pictureDue = c.status == 1 && c.arguments.find("{picture}") != std::string::npos;
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path), {}), pictureDue ? 6 : 5) << "files left";
    if (pictureDue) {
        auto expected = imageDifference(*decodePNG16(encodePNG(acceptedImage())), *decodePNG16(otherFile(c.name)));
        std::string picture = readFile(path("d.png"));
        EXPECT_EQ(decodePNG16(std::vector<uint8_t>(picture.begin(), picture.end())), expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, JtkDiff, testing::Values(
    Case{"byteIdentical", "{good} {other} {picture}", 0, "0 pixels differ\n", ""},
    Case{"equalValuesAt16Bits", "{good} {other} {picture}", 0, "0 pixels differ\n", ""},
    Case{"alphaOnly", "{good} {other} {picture}", 1, "1 pixel differs\n", ""},
    Case{"onlyTheLowByteAt16Bits", "{good} {other} {picture}", 1, "1 pixel differs\n", ""},
    Case{"otherSize", "{good} {other} {picture}", 1, "6 pixels differ; sizes differ: 3x2 and 4x2\n", ""},
    Case{"noPictureAsked", "{good} {other}", 1, "6 pixels differ; sizes differ: 3x2 and 4x2\n", ""},
    Case{"tooFewArguments", "{good}", 2, "", "usage: jtk-diff ACCEPTED.png NEW.png [DIFF.png]"},
    Case{"tooManyArguments", "{good} {good} {good} {good}", 2, "", "usage: jtk-diff"},
    Case{"missingFile", "{good} /nonexistent/n.png", 2, "", "/nonexistent/n.png: No such file or directory"},
    Case{"folder", "{good} /tmp", 2, "", "/tmp: not a regular file"},
    Case{"notPNG", "{other} {good} {picture}", 2, "", "o.png: not a PNG file"},
    Case{"empty", "{good} {other}", 2, "", "o.png: empty file"},
    Case{"truncated", "{good} {other} {picture}", 2, "", "o.png: truncated PNG file"},
    Case{"badChecksum", "{other} {good}", 2, "", "o.png: corrupt PNG file: bad checksum in the IDAT chunk"},
    Case{"damagedChunkType", "{good} {other}", 2, "", "o.png: corrupt PNG file: bad checksum in the IDA\\xAB chunk"},
    Case{"criticalChunkWithNewline", "{good} {other}", 2, "", "o.png: unsupported critical PNG chunk A\\x0ABC"},
    Case{"identicalButNotPNG", "{other} {other}", 2, "", "not a PNG file"},
    Case{"unsupportedDepth", "{good} {other}", 2, "", "unsupported bit depth 3 for PNG colour type 2"},
    Case{"unwritablePicture", "{good} {other} {unwritable}", 2, "", "d.png: No such file or directory"},
    Case{"pictureOverAFolder", "{good} {other} {folder}", 2, "", "folder: Is a directory"}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
