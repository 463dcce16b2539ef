// jtk-diff as a person runs it: a child process, its exit status, its one
// line on standard output or standard error, and the picture it leaves.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"

using namespace jtk::imaging;
namespace fs = std::filesystem;

namespace {

struct ToolRun {
    int status;
    std::string out, err;
};

std::string readText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeBytes(const fs::path& path, const std::vector<uint8_t>& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

class JtkDiff : public testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("jtk-diff-test-" + std::to_string(::getpid()));
        fs::create_directories(folder_);
        Image accepted(3, 2);
        for (size_t i = 0; i < accepted.pixels.size(); ++i) accepted.pixels[i] = uint8_t(i * 40);
        accepted_ = accepted;
        writeBytes(path("a.png"), encodePNG(accepted));
    }
    void TearDown() override { fs::remove_all(folder_); }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    ToolRun run(const std::string& arguments) const {
        const char* binDir = std::getenv("JTK_BIN_DIR");
        fs::path bin = binDir ? fs::path(binDir) : fs::read_symlink("/proc/self/exe").parent_path();
        std::string command =
            "'" + (bin / "jtk-diff").string() + "' " + arguments + " >'" + path("out") + "' 2>'" + path("err") + "'";
        int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readText(path("out")), readText(path("err"))};
    }

    fs::path folder_;
    Image accepted_;
};

TEST_F(JtkDiff, equalPixelsAnswerZero) {
    fs::copy_file(path("a.png"), path("copy.png"));
    Image16 wide(3, 2);  // the same pixels at 16 bits: other bytes, equal values
    for (size_t i = 0; i < wide.pixels.size(); ++i) wide.pixels[i] = uint16_t(accepted_.pixels[i] * 257);
    writeBytes(path("wide.png"), encodePNG(wide));
    for (const char* other : {"copy.png", "wide.png"}) {
        ToolRun result = run(path("a.png") + " " + path(other) + " " + path("d.png"));
        EXPECT_EQ(result.status, 0) << other;
        EXPECT_EQ(result.out, "0 pixels differ\n");
        EXPECT_EQ(result.err, "");
        EXPECT_FALSE(fs::exists(path("d.png"))) << "no picture when nothing differs";
    }
}

TEST_F(JtkDiff, differencesAnswerOneAndWriteThePicture) {
    Image changed = accepted_;
    changed.pixel(2, 1)[3] ^= 1;  // alpha only
    writeBytes(path("b.png"), encodePNG(changed));
    ToolRun result = run(path("a.png") + " " + path("b.png") + " " + path("d.png"));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "1 pixel differs\n");
    auto picture = readText(path("d.png"));
    EXPECT_EQ(decodePNG(std::vector<uint8_t>(picture.begin(), picture.end())), imageDifference(accepted_, changed));

    Image wider(4, 2);
    writeBytes(path("wide.png"), encodePNG(wider));
    EXPECT_EQ(run(path("a.png") + " " + path("wide.png")).out, "6 pixels differ; sizes differ: 3x2 and 4x2\n");

    Image16 deep(1, 1), deeper(1, 1);
    deep.pixels = {0x1234, 0, 0, 0xffff};
    deeper.pixels = {0x1235, 0, 0, 0xffff};  // only the low byte differs
    writeBytes(path("deep.png"), encodePNG(deep));
    writeBytes(path("deeper.png"), encodePNG(deeper));
    ToolRun sixteen = run(path("deep.png") + " " + path("deeper.png"));
    EXPECT_EQ(sixteen.status, 1);
    EXPECT_EQ(sixteen.out, "1 pixel differs\n");
}

struct BadInput {
    const char* name;
    std::string arguments;  // A stands for a good PNG file, X for the bad one, D for the picture
    std::string message;    // part of the one line on standard error
};

// Makes the bad file of each case from a good one.
std::vector<uint8_t> badFile(const std::string& name, std::vector<uint8_t> good) {
    if (name == "unwritablePicture") return encodePNG(Image(3, 2));  // differs, so a picture is due
    if (name == "notPNG" || name == "identicalButNotPNG") return {'h', 'e', 'l', 'l', 'o', '\n', 'x', 'y', 'z'};
    if (name == "empty") return {};
    if (name == "truncated") return std::vector<uint8_t>(good.begin(), good.begin() + long(good.size() / 2));
    if (name == "badChecksum") {
        good[good.size() - 20] ^= 0x40;  // inside the image data
        return good;
    }
    if (name == "unsupportedDepth") {  // RGB at 3 bits, with a right checksum
        good[24] = 3, good[25] = 2;
        uint32_t crc = uint32_t(crc32(0, good.data() + 12, 17));
        for (int i = 0; i < 4; ++i) good[29 + i] = uint8_t(crc >> (24 - 8 * i));
        return good;
    }
    return good;
}

class JtkDiffBadInput : public JtkDiff, public testing::WithParamInterface<BadInput> {};

TEST_P(JtkDiffBadInput, answersTwoWithOneLine) {
    const BadInput& c = GetParam();
    auto good = encodePNG(accepted_);
    writeBytes(path("x.png"), badFile(c.name, good));
    std::string arguments = c.arguments;
    for (auto [letter, file] : {std::pair{'A', "a.png"}, {'X', "x.png"}, {'D', "no/such/folder/d.png"}}) {
        for (size_t at; (at = arguments.find(letter)) != std::string::npos;) arguments.replace(at, 1, path(file));
    }
    ToolRun result = run(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

INSTANTIATE_TEST_SUITE_P(Cases, JtkDiffBadInput, testing::Values(
    BadInput{"tooFewArguments", "A", "usage: jtk-diff ACCEPTED.png NEW.png [DIFF.png]"},
    BadInput{"tooManyArguments", "A A A A", "usage: jtk-diff"},
    BadInput{"missingFile", "A /nonexistent/n.png", "/nonexistent/n.png: No such file or directory"},
    BadInput{"folder", "A /tmp", "/tmp: not a regular file"},
    BadInput{"notPNG", "X A", "x.png: not a PNG file"},
    BadInput{"empty", "A X", "x.png: empty file"},
    BadInput{"truncated", "A X", "x.png: truncated PNG file"},
    BadInput{"badChecksum", "X A", "x.png: corrupt PNG file: bad checksum in the IDAT chunk"},
    BadInput{"identicalButNotPNG", "X X", "not a PNG file"},
    BadInput{"unsupportedDepth", "A X", "unsupported bit depth 3 for PNG colour type 2"},
    BadInput{"unwritablePicture", "A X D", "d.png: No such file or directory"}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
