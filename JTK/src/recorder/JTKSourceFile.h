// The test source file as a recording edits it: the recording method put in
// after the jtkThisFilePath provider, the marker line above which statements
// go, statements inserted, chained onto the previous line or removed, and
// every write done atomically (a temporary file beside it, then a rename) so
// that the file is never left half-written.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "recorder/JTKSourceLiteral.h"

namespace jtk {

// The whole file as text; none (and a reason) when it cannot be read.
std::optional<std::string> jtkReadTextFile(const std::filesystem::path& file, std::string& error);
// Writes a temporary file in the same folder with the original's permissions
// and renames it over the file (a link is followed to its target). On failure
// the file is untouched, the temporary file removed, and error says why.
bool jtkWriteTextFileAtomically(const std::filesystem::path& file, const std::string& text, std::string& error);
// A path as one word of a bash command line.
std::string jtkShellQuoted(const std::string& text);

// The text whose line is the marker: "rec()", "[self rec:@__FILE__];" or a C++ comment.
const char* jtkMarkerText(JTKDialect dialect);
// The method inserted for a recording, its lines joined by "\n"; number is
// empty for the file's first recording method.
std::string jtkRecordingMethodText(JTKDialect dialect, const std::string& number);

enum class JTKRecordingMethodResult { inserted, noProviderLine, noClosingBrace, unreadable, unwritable };
// Puts a recording method into the file; message is the line to print when
// something stopped it (empty for noProviderLine, which leaves the file as it is silently).
JTKRecordingMethodResult jtkInsertRecordingMethod(const std::filesystem::path& file, std::string& message);

class JTKSourceFile {
public:
    enum class Write { unchanged, written, failed };

    // The file's lines as read now; none (and the line to print) when it cannot be read.
    static std::optional<JTKSourceFile> open(const std::filesystem::path& file, std::string& message);

    const std::filesystem::path& path() const { return path_; }
    JTKDialect dialect() const { return dialect_; }
    const std::vector<std::string>& lines() const { return lines_; }
    const std::vector<size_t>& editIndices() const { return editIndices_; }
    // The first line that holds the marker text.
    std::optional<size_t> markerLine() const;
    // True when a chained statement has a statement line to continue.
    bool hasStatementToContinue() const;

    // A statement as a new line right above the marker line, indented like
    // it, or chained onto the line of the previous statement.
    Write insertStatement(const std::string& statement, bool chained);
    // Takes out the line of the most recent statement (never the marker line).
    Write removeLastStatement();
    // Removes the marker line and writes the file; the buffer is emptied.
    Write finish();
    // Writes the lines and touches the file, so that an editor reloads it.
    Write saveFile();
    // Why the last write failed, as one line to print.
    const std::string& failure() const { return failure_; }

private:
    JTKSourceFile(std::filesystem::path path, const std::string& text);

    std::filesystem::path path_;
    JTKDialect dialect_;
    std::vector<std::string> lines_;
    std::vector<size_t> editIndices_;
    std::string failure_;
};

}  // namespace jtk
