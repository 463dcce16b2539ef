// jtk-review accept, discard and prune on a real store: the lines printed,
// the exit status and every file left afterwards.
#include <gtest/gtest.h>

#include "tests/review/ReviewTool.h"

using namespace testsupport;

namespace {

struct StoreCase {
    const char* name;
    const char* arguments;  // after "{root}": {root} is the screenshot root
    int status;
    const char* out;  // exactly
    const char* err;  // a part of it
    const char* files;  // the visible files afterwards, "path=content" joined by spaces
};
void PrintTo(const StoreCase& c, std::ostream* out) { *out << c.name; }


// Version V: Save has two pending captures and a stale accepted image; Open
// has a pending new view and no captured list; Quit's captured list (with
// CRLF line ends and a blank line) makes its pending capture stale.
constexpr const char* untouched =
    "Open/c.png=C1 Open/temp/c.png=C2 Open/temp/new.png=N "
    "Quit/d.png=D1 Quit/temp/gone.png=G2 "
    "Save/a.png=A1 Save/b.png=B1 Save/old.png=O Save/temp/a.png=A2 Save/temp/b.png=B2";

class JtkReviewStore : public testing::TestWithParam<StoreCase> {
protected:
    void SetUp() override {
        auto version = scratch.path / "V";
        for (std::string file : {"Open/c.png=C1", "Open/temp/c.png=C2", "Open/temp/new.png=N", "Quit/d.png=D1",
                                 "Quit/temp/gone.png=G2", "Save/a.png=A1", "Save/b.png=B1", "Save/old.png=O",
                                 "Save/temp/a.png=A2", "Save/temp/b.png=B2", "Save/.jtk-captured=a.png\nb.png\n",
                                 "Quit/.jtk-captured=d.png\r\n\r\n"})
            writeFile(version / file.substr(0, file.find('=')), file.substr(file.find('=') + 1));
    }
    // Every file but the captured lists, as "path=content" joined by spaces.
    std::string files() const {
        std::string text;
        for (const auto& file : filesBelow(scratch.path / "V", true))
            if (file.find("/.jtk-captured") == std::string::npos) text += (text.empty() ? "" : " ") + file;
        return text;
    }
    ScratchFolder scratch;
};

TEST_P(JtkReviewStore, changesExactlyTheChosenFilesAndSaysSo) {
    const auto& c = GetParam();
    auto run = runReview(scratch.path, c.arguments);
    EXPECT_EQ(run.status, c.status);
    std::string out = c.out;
    if (auto at = out.find("{V}"); at != std::string::npos) out.replace(at, 3, (scratch.path / "V").string());
    EXPECT_EQ(run.out, out);
    EXPECT_NE(run.err.find(c.err), std::string::npos) << run.err;
    EXPECT_EQ(files(), c.files);
    // An emptied temp folder goes; one with something left stays.
    for (const char* test : {"Open", "Quit", "Save"}) {
        bool left = files().find(std::string(test) + "/temp/") != std::string::npos;
        EXPECT_EQ(fs::exists(scratch.path / "V" / test / "temp"), left) << test;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, JtkReviewStore,
    testing::Values(
        StoreCase{"acceptAll", "accept --version V {root}", 0,
                  "accepted\tOpen\tc.png\naccepted\tOpen\tnew.png\naccepted\tQuit\tgone.png\n"
                  "accepted\tSave\ta.png\naccepted\tSave\tb.png\n",
                  "", "Open/c.png=C2 Open/new.png=N Quit/d.png=D1 Quit/gone.png=G2 Save/a.png=A2 Save/b.png=B2 Save/old.png=O"},
        StoreCase{"acceptOneTestByName", "accept {root} testSave --version V", 0,
                  "accepted\tSave\ta.png\naccepted\tSave\tb.png\n", "",
                  "Open/c.png=C1 Open/temp/c.png=C2 Open/temp/new.png=N Quit/d.png=D1 Quit/temp/gone.png=G2 "
                  "Save/a.png=A2 Save/b.png=B2 Save/old.png=O"},
        StoreCase{"acceptOneImageWithoutExtension", "accept --version V {root} Save b", 0, "accepted\tSave\tb.png\n", "",
                  "Open/c.png=C1 Open/temp/c.png=C2 Open/temp/new.png=N Quit/d.png=D1 Quit/temp/gone.png=G2 "
                  "Save/a.png=A1 Save/b.png=B2 Save/old.png=O Save/temp/a.png=A2"},
        StoreCase{"acceptUnknownImage", "accept --version V {root} Save old.png", 2, "",
                  "no pending image \"old.png\" in test \"Save\" (pending there: \"a.png\", \"b.png\")", untouched},
        StoreCase{"acceptUnknownTest", "accept --version V {root} Print", 2, "",
                  "no test \"Print\" in ", untouched},
        StoreCase{"acceptTooMany", "accept --version V {root} Save a.png b.png", 2, "",
                  "too many operands for jtk-review accept: \"b.png\"", untouched},
        StoreCase{"discardOneTest", "discard --version V {root} Open", 0,
                  "discarded\tOpen\ttemp/c.png\ndiscarded\tOpen\ttemp/new.png\n", "",
                  "Open/c.png=C1 Quit/d.png=D1 Quit/temp/gone.png=G2 Save/a.png=A1 Save/b.png=B1 Save/old.png=O "
                  "Save/temp/a.png=A2 Save/temp/b.png=B2"},
        StoreCase{"discardOneImage", "discard --version V {root} Save a.png", 0,
                  "discarded\tSave\ttemp/a.png\n", "",
                  "Open/c.png=C1 Open/temp/c.png=C2 Open/temp/new.png=N Quit/d.png=D1 Quit/temp/gone.png=G2 "
                  "Save/a.png=A1 Save/b.png=B1 Save/old.png=O Save/temp/b.png=B2"},
        StoreCase{"pruneList", "prune --list --version V {root}", 1,
                  "not recorded\tOpen\tno .jtk-captured, left alone\nstale\tQuit\ttemp/gone.png\nstale\tSave\told.png\n",
                  "", untouched},
        StoreCase{"pruneListOneTestWithNothingStale", "prune --version V --list {root} Open", 0,
                  "not recorded\tOpen\tno .jtk-captured, left alone\njtk-review: no stale images in {V}\n", "", untouched},
        StoreCase{"prune", "prune --version V {root}", 0,
                  "not recorded\tOpen\tno .jtk-captured, left alone\nremoved\tQuit\ttemp/gone.png\nremoved\tSave\told.png\n",
                  "",
                  "Open/c.png=C1 Open/temp/c.png=C2 Open/temp/new.png=N Quit/d.png=D1 Save/a.png=A1 Save/b.png=B1 "
                  "Save/temp/a.png=A2 Save/temp/b.png=B2"},
        StoreCase{"pruneTakesNoImage", "prune --version V {root} Save old.png", 2, "",
                  "too many operands for jtk-review prune", untouched},
        StoreCase{"listIsNotAnAcceptOption", "accept --list --version V {root}", 2, "",
                  "unknown option \"--list\" for jtk-review accept", untouched}),
    [](const auto& info) { return std::string(info.param.name); });

// A pending capture whose accepted name is taken by a folder cannot be
// accepted: the failure is one line on standard error naming the file, the
// rest is done, nothing is lost and the status is 2.
TEST(JtkReviewStoreFailures, aFileThatCannotBeChangedIsNamedAndTheRestIsDone) {
    ScratchFolder scratch;
    writeFile(scratch.path / "V" / "Save" / "temp" / "a.png", "A2");
    writeFile(scratch.path / "V" / "Save" / "a.png" / "inside", "X");
    writeFile(scratch.path / "V" / "Undo" / "temp" / "u.png", "U2");
    auto run = runReview(scratch.path, "accept --version V {root}");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "accepted\tUndo\tu.png\n");
    EXPECT_NE(run.err.find("jtk-review: cannot accept " + (scratch.path / "V/Save/temp/a.png").string()), std::string::npos)
        << run.err;
    EXPECT_EQ(filesBelow(scratch.path / "V", true),
              (std::vector<std::string>{"Save/a.png/inside=X", "Save/temp/a.png=A2", "Undo/u.png=U2"}));
}

}  // namespace
