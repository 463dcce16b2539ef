// The texts of the screenshot store: numbers in file names, whole file names
// and the size threshold from launch arguments. (The version tag is the
// driver's tags test; the text it is made from, the process-info test.)
#include <gtest/gtest.h>

#include <limits>

#include "screenshots/JTKScreenshotNames.h"

using namespace jtk;

struct NumberCase {
    double value;
    const char* text;
};

class ScreenshotNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(ScreenshotNumber, isTheShortestRoundTripDecimalWithAFraction) {
    EXPECT_EQ(jtkScreenshotNumber(GetParam().value), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Values, ScreenshotNumber,
                         testing::Values(NumberCase{20, "20.0"}, NumberCase{12.5, "12.5"}, NumberCase{0, "0.0"},
                                         NumberCase{-0.0, "-0.0"}, NumberCase{-130, "-130.0"}, NumberCase{0.1, "0.1"},
                                         NumberCase{1.0 / 3, "0.3333333333333333"},
                                         NumberCase{1e6, "1000000.0"},  // never 1e+06
                                         NumberCase{1e-7, "0.0000001"}, NumberCase{123456.75, "123456.75"}));

TEST(ScreenshotFileName, joinsTheViewTextsAndGeometryWithoutSlashes) {
    EXPECT_EQ(jtkScreenshotFileName("Save", "", 0, {20, 12}, {80, 32}), "Save__0_(20.0, 12.0)(80.0, 32.0)");
    EXPECT_EQ(jtkScreenshotFileName("", "Notes are kept in Documents/", 3, {-0.5, 1e6}, {0.25, 24}),
              "_Notes are kept in Documents_3_(-0.5, 1000000.0)(0.25, 24.0)");
    EXPECT_EQ(jtkScreenshotFileName("a/b", "/usr/share/x", 0, {0, 0}, {1, 1}), "ab_usrsharex_0_(0.0, 0.0)(1.0, 1.0)");
    EXPECT_EQ(jtkScreenshotFileName("Notes", "line one\nline\ttwo", 0, {0, 0}, {1, 1}),
              "Notes_line one line two_0_(0.0, 0.0)(1.0, 1.0)");
}

TEST(ScreenshotFileName, aLongValueKeepsItsStartAndAHashOfTheWhole) {
    std::string document(5000, 'x');
    auto first = jtkScreenshotFileName("Editor", document + "é" + "end one", 0, {0, 0}, {400, 300});
    auto second = jtkScreenshotFileName("Editor", document + "é" + "end two", 0, {0, 0}, {400, 300});
    EXPECT_LE(first.size(), jtkScreenshotTextLimit + 40);
    EXPECT_TRUE(first.starts_with("Editor_xxxx"));
    EXPECT_NE(first, second) << "texts that differ only at their end get names of their own";
    EXPECT_EQ(first, jtkScreenshotFileName("Editor", document + "é" + "end one", 0, {0, 0}, {400, 300}));
    // Cut on a whole character: "_" then two-byte "é"s, where the limit
    // (less the hash's room) falls inside an "é".
    std::string accents;
    for (int i = 0; i < 100; ++i) accents += "é";
    auto cut = jtkScreenshotFileName("", accents, 0, {0, 0}, {1, 1});
    EXPECT_EQ(cut.find('~'), jtkScreenshotTextLimit - 11) << cut;
}

struct ThresholdCase {
    std::vector<std::string> arguments;
    int64_t threshold;
    std::optional<int64_t> fromCode = std::nullopt;  // JTKScreenshots::setSizeThreshold
};

class FileSizeThreshold : public testing::TestWithParam<ThresholdCase> {};

TEST_P(FileSizeThreshold, comesFromTheFirstArgumentThatNamesIt) {
    EXPECT_EQ(jtkFileSizeThreshold(GetParam().arguments, GetParam().fromCode), GetParam().threshold);
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, FileSizeThreshold,
    testing::Values(ThresholdCase{{"Sample", "uxtest"}, 30000}, ThresholdCase{{"Sample", "fileSizeThresh=5000"}, 5000},
                    ThresholdCase{{"fileSizeThresh=abc"}, 30000}, ThresholdCase{{"fileSizeThresh="}, 30000},
                    ThresholdCase{{"-fileSizeThresh=100"}, -100},  // the rest "-100" is an integer
                    ThresholdCase{{"fileSizeThresh=+42"}, 42}, ThresholdCase{{"fileSizeThresh=12 "}, 30000},
                    ThresholdCase{{"fileSizeThresh=0x10"}, 30000}, ThresholdCase{{"fileSizeThresh=-"}, 30000},
                    // Every occurrence is removed, then the rest is read.
                    ThresholdCase{{"fileSizeThresh=1fileSizeThresh=2"}, 12},
                    // Only the first argument that contains the key counts.
                    ThresholdCase{{"fileSizeThresh=x", "fileSizeThresh=10"}, 30000},
                    ThresholdCase{{"fileSizeThresh=9223372036854775807"}, std::numeric_limits<int64_t>::max()},
                    ThresholdCase{{"fileSizeThresh=9223372036854775808"}, 30000},
                    ThresholdCase{{"fileSizeThresh=-9223372036854775808"}, std::numeric_limits<int64_t>::min()},
                    // The code's threshold, unless an argument that reads as a number overrides it.
                    ThresholdCase{{"Sample", "uxtest"}, 1000, 1000},
                    ThresholdCase{{"Sample", "fileSizeThresh=5000"}, 5000, 1000},
                    ThresholdCase{{"Sample", "fileSizeThresh=abc"}, 1000, 1000}));
