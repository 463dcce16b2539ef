// Editing the test source file: the recording method and its numbering, the
// marker line, statements inserted, chained and removed, the end of a
// recording, and writes that never leave a half-written or stray file.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "recorder/JTKSourceFile.h"
#include "tests/support/TestFiles.h"

using namespace jtk;
using namespace testsupport;

namespace {

using Write = JTKSourceFile::Write;

struct MethodCase {
    const char* label;
    std::string fileName, before, after;
    JTKRecordingMethodResult result;
    friend void PrintTo(const MethodCase& c, std::ostream* out) { *out << c.label; }
};

class RecorderRecordingMethod : public testing::TestWithParam<MethodCase> {};

TEST_P(RecorderRecordingMethod, followsTheProviderWithTheNextFreeNumber) {
    const auto& c = GetParam();
    ScratchFolder folder;
    auto file = folder.path / c.fileName;
    writeFile(file, c.before);
    std::string message;
    EXPECT_EQ(jtkInsertRecordingMethod(file, message), c.result);
    EXPECT_EQ(readFile(file), c.after);
    EXPECT_EQ(message.empty(), c.result == JTKRecordingMethodResult::inserted ||
                                   c.result == JTKRecordingMethodResult::noProviderLine) << message;
}

const std::string swiftProvider = "extension JTKTestSuite {\n    class func jtkThisFilePath() -> String { return #file }\n";
const std::string objcImport = "#import <Foundation/Foundation.h>", objcMethod = "\n    \n+(void) testRecording\n{\n    [self rec:@__FILE__];\n}";
const std::string cppProvider = "#include <JTK/JTK.h>\nJTK_PROVIDER(jtkThisFilePath)\n{\n    return __FILE__;\n}\nJTK_TEST(testA) {}\n";

INSTANTIATE_TEST_SUITE_P(
    Files, RecorderRecordingMethod,
    testing::Values(
        MethodCase{"swiftFirst", "T.swift", swiftProvider + "}",
                   swiftProvider.substr(0, swiftProvider.size() - 1) +
                       "\n    \n    class func testRecording()\n    {\n        rec()\n    }\n}",
                   JTKRecordingMethodResult::inserted},
        MethodCase{"swiftThird", "T.swift", "// testRecording testRecording1\n" + swiftProvider,
                   "// testRecording testRecording1\n" + swiftProvider.substr(0, swiftProvider.size() - 1) +
                       "\n    \n    class func testRecording2()\n    {\n        rec()\n    }\n",
                   JTKRecordingMethodResult::inserted},
        MethodCase{"objcImportAdded", "T.m", "@implementation JTKTestSuite (T)\n+(NSString*) jtkThisFilePath { return @__FILE__; }\n@end",
                   "#import <Foundation/Foundation.h>\n@implementation JTKTestSuite (T)\n+(NSString*) jtkThisFilePath { return "
                   "@__FILE__; }\n    \n+(void) testRecording\n{\n    [self rec:@__FILE__];\n}\n@end",
                   JTKRecordingMethodResult::inserted},
        MethodCase{"objcImportKept", "T.mm", "#import <Foundation/Foundation.h>\n+ jtkThisFilePath {}",
                   "#import <Foundation/Foundation.h>\n+ jtkThisFilePath {}\n    \n+(void) testRecording\n{\n    [self rec:@__FILE__];\n}",
                   JTKRecordingMethodResult::inserted},
        // A byte-order mark stays first, and the import is looked for after it.
        MethodCase{"objcMarkStaysFirst", "T.m", "\xEF\xBB\xBF+ jtkThisFilePath {}", "\xEF\xBB\xBF" + objcImport + "\n+ jtkThisFilePath {}" + objcMethod,
                   JTKRecordingMethodResult::inserted},
        MethodCase{"objcImportAfterMarkKept", "T.m", "\xEF\xBB\xBF" + objcImport + "\r\n+ jtkThisFilePath {}",
                   "\xEF\xBB\xBF" + objcImport + "\r\n+ jtkThisFilePath {}" + objcMethod, JTKRecordingMethodResult::inserted},
        MethodCase{"cpp", "T.cpp", cppProvider,
                   "#include <JTK/JTK.h>\nJTK_PROVIDER(jtkThisFilePath)\n{\n    return __FILE__;\n}\n\nJTK_TEST(testRecording) {\n    "
                   "// JTK is recording: statements go above this line\n}\nJTK_TEST(testA) {}\n",
                   JTKRecordingMethodResult::inserted},
        MethodCase{"noProvider", "T.swift", "class func testA() {}\n", "class func testA() {}\n",
                   JTKRecordingMethodResult::noProviderLine},
        MethodCase{"noBraceAfterProvider", "T.cpp", "}\nJTK_PROVIDER(jtkThisFilePath)\n", "}\nJTK_PROVIDER(jtkThisFilePath)\n",
                   JTKRecordingMethodResult::noClosingBrace}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(RecorderRecordingMethod, reportsAFileThatCannotBeRead) {
    ScratchFolder folder;
    std::string message;
    EXPECT_EQ(jtkInsertRecordingMethod(folder.path / "missing.cpp", message), JTKRecordingMethodResult::unreadable);
    EXPECT_NE(message.find("cannot read the test source file"), std::string::npos) << message;
    EXPECT_FALSE(fs::exists(folder.path / "missing.cpp"));
}

// A recording's file: the head and tail around the method must stay byte-identical.
struct Recording {
    explicit Recording(JTKDialect dialect, const std::string& indentation = "    ") {
        const char* names[] = {"Rec Tests.swift", "Rec Tests.m", "Rec Tests.cpp"};
        file = folder.path / names[static_cast<int>(dialect)];
        writeFile(file, head + indentation + jtkMarkerText(dialect) + "\n" + tail);
        std::string message;
        source = JTKSourceFile::open(file, message);
    }
    std::string body() const {
        std::string text = readFile(file);
        EXPECT_TRUE(text.starts_with(head) && text.ends_with(tail)) << escaped(text);
        return text.substr(head.size(), text.size() - head.size() - tail.size());
    }
    ScratchFolder folder;
    fs::path file;
    std::optional<JTKSourceFile> source;
    const std::string head = "\xEF\xBB\xBF// caf\xC3\xA9 \"\\\r\nbegin {\n";
    const std::string tail = "}\r\n// end without line feed";
};

TEST(RecorderStatementLines, goAboveTheMarkerWithItsIndentationInRecordingOrder) {
    Recording recording(JTKDialect::swift, "        ");
    for (const char* statement : {"typeText(\"a\")", "typeText(\"b\")", "typeText(\"c\")"})
        EXPECT_EQ(recording.source->insertStatement(statement, false), Write::written);
    EXPECT_EQ(recording.body(), "        typeText(\"a\")\n        typeText(\"b\")\n        typeText(\"c\")\n        rec()\n");
}

struct ChainCase {
    const char* label;
    JTKDialect dialect;
    std::string first, chained, line;
    friend void PrintTo(const ChainCase& c, std::ostream* out) { *out << c.label; }
};

class RecorderChainedLines : public testing::TestWithParam<ChainCase> {};

TEST_P(RecorderChainedLines, continueThePreviousStatementAndAreRemovedWithIt) {
    const auto& c = GetParam();
    Recording recording(c.dialect);
    std::string marker = std::string("    ") + jtkMarkerText(c.dialect) + "\n";
    // Nothing to continue yet: the marker line is never extended.
    EXPECT_EQ(recording.source->insertStatement(c.chained, true), Write::unchanged);
    recording.source->insertStatement(c.first, false);
    EXPECT_EQ(recording.source->insertStatement(c.chained, true), Write::written);
    EXPECT_EQ(recording.body(), "    " + c.line + "\n" + marker);
    // The removal takes the whole chained line, and a second one finds nothing left.
    EXPECT_EQ(recording.source->removeLastStatement(), Write::written);
    EXPECT_EQ(recording.source->removeLastStatement(), Write::unchanged);
    EXPECT_EQ(recording.body(), marker);
}

INSTANTIATE_TEST_SUITE_P(
    Languages, RecorderChainedLines,
    testing::Values(
        ChainCase{"swift", JTKDialect::swift, "element(\"Slider\").click(offset: NSPoint(5.0,0.0))",
                  ".drag(offset: NSPoint(40.0,0.0))",
                  "element(\"Slider\").click(offset: NSPoint(5.0,0.0)).drag(offset: NSPoint(40.0,0.0))"},
        ChainCase{"objc", JTKDialect::objectiveC, "[[self element:@\"Slider\"] clickWithOffset: NSMakePoint(5.0,0.0)];",
                  " dragWithOffset: NSMakePoint(40.0,0.0)];",
                  "[[[self element:@\"Slider\"] clickWithOffset: NSMakePoint(5.0,0.0)] dragWithOffset: NSMakePoint(40.0,0.0)];"},
        // A semicolon inside a text stays where it is.
        ChainCase{"objcSemicolonInText", JTKDialect::objectiveC, "[[self element:@\"a;b\"] click];",
                  " clickMenuItemWithTitle: @\"c;\"];", "[[[self element:@\"a;b\"] click] clickMenuItemWithTitle: @\"c;\"];"},
        ChainCase{"cpp", JTKDialect::cpp, "element(\"Slider\").click({.offset = {5.0, 0.0}});", ".drag({40.0, 0.0});",
                  "element(\"Slider\").click({.offset = {5.0, 0.0}}).drag({40.0, 0.0});"}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(RecorderStatementLines, finishRemovesTheMarkerAndKeepsTheBraces) {
    Recording recording(JTKDialect::swift);
    recording.source->insertStatement("typeText(\"a\")", false);
    EXPECT_EQ(recording.source->finish(), Write::written);
    EXPECT_EQ(recording.body(), "    typeText(\"a\")\n");
    EXPECT_TRUE(recording.source->lines().empty());
}

// An Objective-C chain onto a line without a bracket, and a file without a marker.
TEST(RecorderStatementLines, nothingIsWrittenForAnObjcChainWithoutBracketOrWithoutAMarker) {
    Recording objc(JTKDialect::objectiveC);
    objc.source->insertStatement("plain;", false);
    EXPECT_EQ(objc.source->insertStatement(" more];", true), Write::unchanged);
    EXPECT_EQ(objc.body(), "    plain;\n    [self rec:@__FILE__];\n");
    Recording recording(JTKDialect::swift);
    writeFile(recording.file, "changed by hand");  // ignored: the recorder's copy is the truth
    std::string message;
    auto unmarked = JTKSourceFile::open(recording.file, message);
    ASSERT_TRUE(unmarked);
    EXPECT_EQ(unmarked->insertStatement("typeText(\"a\")", false), Write::unchanged);
    EXPECT_EQ(unmarked->finish(), Write::unchanged);
    EXPECT_EQ(readFile(recording.file), "changed by hand");
}

TEST(RecorderFileWrites, touchAPathWithBlanksAsOneFileAndLeaveNoOtherFile) {
    Recording recording(JTKDialect::swift);
    // Files a split path would name: they must keep their times.
    for (const char* decoy : {"Rec", "Tests.swift"}) writeFile(recording.folder.path / decoy, "decoy");
    auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
    for (const auto& entry : fs::directory_iterator(recording.folder.path)) fs::last_write_time(entry.path(), past);
    EXPECT_EQ(recording.source->insertStatement("typeText(\"a\")", false), Write::written);
    EXPECT_GT(fs::last_write_time(recording.file), past);
    for (const char* decoy : {"Rec", "Tests.swift"})
        EXPECT_EQ(fs::last_write_time(recording.folder.path / decoy), past) << decoy;
    EXPECT_EQ(namesIn(recording.folder.path), (std::vector<std::string>{"Rec", "Rec Tests.swift", "Tests.swift"}));
}

// The recorder holds the whole text: a file, or a link's target, deleted meanwhile is made again.
TEST(RecorderFileWrites, aDeletedFileIsMadeAgainWithANewFilesPermissions) {
    for (bool linked : {false, true}) {
        Recording recording(JTKDialect::swift);
        fs::path written = linked ? recording.folder.path / "target.swift" : recording.file;
        if (linked) { fs::rename(recording.file, written); fs::create_symlink("target.swift", recording.file); }
        fs::remove(written);
        EXPECT_EQ(recording.source->insertStatement("typeText(\"b\")", false), Write::written) << recording.source->failure();
        EXPECT_EQ(recording.body(), "    typeText(\"b\")\n    rec()\n");
        EXPECT_EQ(fs::is_symlink(recording.file), linked);
        mode_t mask = ::umask(0);
        ::umask(mask);
        EXPECT_EQ(static_cast<mode_t>(fs::status(written).permissions()), 0666 & ~mask);
    }
}

TEST(RecorderFileWrites, aFailedWriteKeepsTheLastCompleteFileAndSaysWhy) {
    Recording recording(JTKDialect::swift);
    recording.source->insertStatement("typeText(\"a\")", false);
    std::string before = readFile(recording.file);
    // The folder moves away (a root process writes into read-only folders, so that is no test).
    auto moved = recording.folder.path.string() + "-moved";
    fs::rename(recording.folder.path, moved);
    EXPECT_EQ(recording.source->insertStatement("typeText(\"b\")", false), Write::failed);
    fs::rename(moved, recording.folder.path);
    EXPECT_EQ(readFile(recording.file), before);
    EXPECT_NE(recording.source->failure().find("cannot write the test source file"), std::string::npos);
    EXPECT_EQ(namesIn(recording.folder.path), std::vector<std::string>{"Rec Tests.swift"});
}

}  // namespace
