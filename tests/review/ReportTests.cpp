// jtk-review report over a small real store and JUnit file: the file it
// writes, and that page opened in headless chromium without network, where
// its own script reports whether every picture shows.
#include <gtest/gtest.h>

#include <regex>

#include "JTK/imaging/PNG.h"
#include "tests/review/ReviewTool.h"

using namespace testsupport;

namespace {

// A PNG of width x height opaque grey pixels, `marked` of them (from the top left) white.
std::string png(uint32_t width, uint32_t height, size_t marked = 0) {
    jtk::imaging::Image image(width, height);
    for (size_t i = 0; i < image.pixels.size(); ++i) image.pixels[i] = i % 4 == 3 ? 255 : (i / 4 < marked ? 255 : 90);
    auto bytes = jtk::imaging::encodePNG(image);
    return {bytes.begin(), bytes.end()};
}

// The chromium of the machine, or empty.
std::string chromium() {
    if (const char* path = std::getenv("JTK_CHROMIUM")) return path;
    return std::system("command -v chromium >/dev/null 2>&1") == 0 ? "chromium" : "";
}

class JtkReviewReport : public testing::Test {
protected:
    // Save: a pending capture with 2 of 12 pixels changed, one a row shorter
    // (8 more pixels marked), a stale accepted image. Open: nothing pending,
    // no captured list. New: a pending capture without an accepted image.
    void SetUp() override {
        auto v = scratch.path / "V";
        writeFile(v / "Save" / "button.png", png(4, 3));
        writeFile(v / "Save" / "temp" / "button.png", png(4, 3, 2));
        writeFile(v / "Save" / "window.png", png(8, 6));
        writeFile(v / "Save" / "temp" / "window.png", png(8, 5));
        writeFile(v / "Save" / "stale.png", png(2, 2));
        writeFile(v / "Save" / ".jtk-captured", "button.png\nwindow.png\n");
        writeFile(v / "Open" / "label.png", png(3, 3));
        writeFile(v / "New" / "temp" / "fresh.png", png(5, 2));
        writeFile(scratch.path / "failure.png", png(16, 9, 40));
        writeFile(scratch.path / "results.xml",
                  "<testsuites><testsuite name='App'><testcase name='testOpen' time='0.5'/>"
                  "<testcase name='testSave' time='1.25'><failure message='Check &lt;failed&gt;'>at Save.cpp:3</failure>"
                  "<system-out>[[ATTACHMENT|" + (scratch.path / "failure.png").string() + "]]\n[[ATTACHMENT|" +
                      (v / "Save" / "temp" / "button.png").string() + "]]</system-out></testcase>"
                  "<testcase name='testQuit'><skipped message='not run'/></testcase><testcase name='testCrash'>"
                  "<error message='signal 11'/><system-out>[[ATTACHMENT|/nonexistent/crash.png]]</system-out>"
                  "</testcase></testsuite></testsuites>");
    }
    ScratchFolder scratch;
};

TEST_F(JtkReviewReport, isOneFileWithEveryPictureInsideAndShowsInABrowser) {
    ASSERT_TRUE(fs::create_directory(scratch.path / "out"));
    auto run = runReview(scratch.path, "report --version V --junit {root}/results.xml {root} {root}/out/report.html");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "jtk-review: wrote " + (scratch.path / "out/report.html").string() +
                           " (5 tests, 3 pending captures, 2 failed tests)\n");
    EXPECT_EQ(namesIn(scratch.path / "out"), std::vector<std::string>{"report.html"});
    std::string html = readFile(scratch.path / "out" / "report.html");
    // Nothing from elsewhere: pictures are data, no address anywhere.
    std::smatch match;
    for (auto it = html.cbegin(); std::regex_search(it, html.cend(), match, std::regex(R"re(src="([^"]{0,5}))re")); it = match[0].second)
        EXPECT_EQ(match[1], "data:");
    EXPECT_EQ(html.find("://"), std::string::npos);
    for (const char* pixels : {"2 of 12 pixels differ (16.67%)", "8 of 48 pixels differ (16.67%); sizes differ: 8x6 and 8x5",
                               "no accepted image: a new view", "Check &lt;failed&gt;", "/nonexistent/crash.png: No such file"})
        EXPECT_NE(html.find(pixels), std::string::npos) << pixels;

    std::string browser = chromium();
    if (browser.empty()) GTEST_SKIP() << "chromium is not installed (scripts/setup.sh installs it): the page was not opened";
    auto home = scratch.path / "home", dom = scratch.path / "dom.html";
    std::string command = "timeout 120 env HOME=" + quoted(home.string()) + " " + browser +
                          " --headless --no-sandbox --disable-gpu --disable-quic --no-first-run"
                          " --disable-background-networking --disable-component-update --disable-sync"
                          " --host-resolver-rules='MAP * ~NOTFOUND' --virtual-time-budget=10000 --user-data-dir=" +
                          quoted((home / "profile").string()) + " --dump-dom " +
                          quoted("file://" + (scratch.path / "out/report.html").string()) + " >" + quoted(dom.string()) +
                          " 2>" + quoted((scratch.path / "chromium.log").string());
    ASSERT_EQ(std::system(command.c_str()), 0) << readFile(scratch.path / "chromium.log");
    std::string page = readFile(dom);
    // Per pair with an accepted image: accepted, new, difference, flip; the
    // new view alone; one failure picture (the other is missing).
    EXPECT_NE(page.find(R"(id="status" data-images="10" data-shown="10" class="ok">All 10 pictures show.)"),
              std::string::npos) << page.substr(0, 4000);
    std::string counts;
    for (auto it = page.cbegin(); std::regex_search(it, page.cend(), match, std::regex(R"re(data-count="(\w+)">([^<]*)<)re"));
         it = match[0].second)
        counts += match[1].str() + "=" + match[2].str() + " ";
    EXPECT_EQ(counts, "tests=4 passed=1 failed=1 errors=1 skipped=1 seconds=1.75 s failurePictures=2 screenshotTests=3 "
                      "accepted=4 pending=3 differing=2 withoutAccepted=1 differingPixels=10 stale=1 notRecorded=2 ");
}

TEST_F(JtkReviewReport, badInputWritesNothing) {
    writeFile(scratch.path / "bad.xml", "<testsuites><testsuite>");
    writeFile(scratch.path / "taken" / "x", "");
    struct {
        const char* arguments;
        const char* error;
    } cases[] = {{"--junit {root}/bad.xml {root} {root}/r.html", "bad.xml:1:24: no element found"},
                 {"{root} {root}/missing/r.html", "missing/r.html: No such file or directory"},
                 {"{root} {root}/taken", "taken: Is a directory"},
                 {"--version W {root} {root}/r.html", "no screenshots of version \"W\""}};
    for (const auto& c : cases) {
        auto run = runReview(scratch.path, std::string("report --version V ") + c.arguments);
        EXPECT_EQ(run.status, 2) << c.arguments;
        EXPECT_NE(run.err.find(c.error), std::string::npos) << run.err;
    }
    EXPECT_EQ(namesIn(scratch.path), (std::vector<std::string>{"V", "bad.xml", "failure.png", "results.xml", "taken"}));
    EXPECT_EQ(namesIn(scratch.path / "taken"), std::vector<std::string>{"x"});
}

}  // namespace
