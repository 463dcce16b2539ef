// jtk-review --list as a build script runs it: a child process without a
// display, one line per pending difference, and its exit status.
#include <gtest/gtest.h>

#include "JTK/imaging/PNG.h"
#include "tests/review/ReviewTool.h"

using namespace testsupport;

namespace {

std::string png(std::array<uint8_t, 4> rgba, uint32_t width = 4) {
    jtk::imaging::Image image(width, 3);
    for (size_t i = 0; i < image.pixels.size(); ++i) image.pixels[i] = rgba[i % 4];
    auto bytes = jtk::imaging::encodePNG(image);
    return {bytes.begin(), bytes.end()};
}

struct ReviewCase {
    const char* name;
    const char* arguments;  // {root} stands for the screenshot root
    int status;
    const char* out;  // exactly, or empty
    const char* err;  // a part of it
};
void PrintTo(const ReviewCase& c, std::ostream* out) { *out << c.name; }


class JtkReviewList : public testing::TestWithParam<ReviewCase> {
protected:
    // Version "V1": testA has one pending pair (4 of 12 pixels differ over a
    // wider accepted image) and an orphan; testB matched. Version "V2": none pending.
    void SetUp() override {
        auto v1 = scratch.path / "V1";
        writeFile(v1 / "testA" / "button.png", png({0, 0, 0, 255}, 5));
        writeFile(v1 / "testA" / "temp" / "button.png", png({0, 0, 0, 255}));
        writeFile(v1 / "testA" / "temp" / "orphan.png", png({1, 2, 3, 4}));
        writeFile(v1 / "testA" / "broken.png", "not a picture");
        writeFile(v1 / "testA" / "temp" / "broken.png", png({9, 9, 9, 9}));
        writeFile(v1 / "testB" / "label.png", png({5, 5, 5, 255}));
        writeFile(scratch.path / "V2" / "testB" / "label.png", png({5, 5, 5, 255}));
    }
    ScratchFolder scratch;
};

TEST_P(JtkReviewList, printsPendingPairsAndExitsOneWhenThereAreAny) {
    auto run = runReview(scratch.path, GetParam().arguments);
    EXPECT_EQ(run.status, GetParam().status);
    EXPECT_EQ(run.out, GetParam().out);
    EXPECT_NE(run.err.find(GetParam().err), std::string::npos) << run.err;
}

INSTANTIATE_TEST_SUITE_P(
    Table, JtkReviewList,
    testing::Values(ReviewCase{"pending", "--list --version V1 {root}", 1, "testA\tbroken.png\tunreadable\ntestA\tbutton.png\t3\n", ""},
                    ReviewCase{"nonePending", "--version V2 --list {root}", 0, "", ""},
                    ReviewCase{"unknownVersion", "--list --version V3 {root}", 2, "",
                               "no screenshots of version \"V3\" in"},
                    ReviewCase{"versionsListed", "--list --version V3 {root}", 2, "", "(versions there: \"V1\", \"V2\")"},
                    ReviewCase{"missingRoot", "--list {root}/nowhere", 2, "", "nowhere: no such folder"},
                    ReviewCase{"noRoot", "--list", 2, "", "no screenshot root given to jtk-review (see jtk-review --help)"},
                    ReviewCase{"versionWithoutTag", "--list {root} --version", 2, "", "--version needs a tag"},
                    ReviewCase{"unknownOption", "--lists {root}", 2, "", "unknown option \"--lists\" for jtk-review"}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
