#include "recorder/JTKSourceFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "run/JTKShell.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t at; (at = text.find('\n', start)) != std::string::npos; start = at + 1)
        lines.push_back(text.substr(start, at - start));
    lines.push_back(text.substr(start));
    return lines;
}

std::string joinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i) text += (i ? "\n" : "") + lines[i];
    return text;
}

size_t countOccurrences(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

std::string removeAll(std::string text, const std::string& part) {
    for (size_t at; (at = text.find(part)) != std::string::npos;) text.erase(at, part.size());
    return text;
}

std::string withoutTrailingSemicolons(std::string text) {
    while (!text.empty() && text.back() == ';') text.pop_back();
    return text;
}

bool writeAll(int descriptor, const std::string& text) {
    for (size_t done = 0; done < text.size();) {
        ssize_t written = ::write(descriptor, text.data() + done, text.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        done += static_cast<size_t>(written);
    }
    return true;
}

// The permission bits a new file gets from open(2): 0666 less the process's
// umask, read without changing it (umask(2) would, for every thread).
mode_t newFileMode() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("Umask:")) return static_cast<mode_t>(0666 & ~std::stoul(line.substr(6), nullptr, 8));
    return 0644;
}

// Where a write of the file goes: the file itself, or the end of its chain of
// symbolic links, also when that end does not exist (a deleted target is made again).
std::optional<fs::path> writeTarget(const fs::path& file, std::string& error) {
    fs::path target = file;
    for (int hops = 0; hops < 40; ++hops) {
        std::error_code code;
        auto status = fs::symlink_status(target, code);
        // A file that is not there is no error: the write makes it.
        if (code && status.type() != fs::file_type::not_found) {
            error = code.message();
            return std::nullopt;
        }
        if (!fs::is_symlink(status)) return target;
        fs::path link = fs::read_symlink(target, code);
        if (code) {
            error = code.message();
            return std::nullopt;
        }
        target = link.is_absolute() ? link : target.parent_path() / link;
    }
    error = std::strerror(ELOOP);
    return std::nullopt;
}

constexpr const char* byteOrderMark = "\xEF\xBB\xBF";

std::string cannotWrite(const fs::path& file, const std::string& reason) {
    return "JTK: cannot write the test source file " + file.string() + " (" + reason + ")";
}

}  // namespace

std::optional<std::string> jtkReadTextFile(const fs::path& file, std::string& error) {
    std::error_code code;
    if (!fs::is_regular_file(file, code)) {
        error = code ? code.message() : fs::exists(file, code) ? "not a regular file" : "no such file";
        return std::nullopt;
    }
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    if (!in || !(text << in.rdbuf()) || in.bad()) {
        // An empty file makes the stream report a failure too: not an error.
        if (fs::file_size(file, code) == 0 && !code && in.is_open()) return std::string{};
        error = std::strerror(errno ? errno : EIO);
        return std::nullopt;
    }
    return text.str();
}

bool jtkWriteTextFileAtomically(const fs::path& file, const std::string& text, std::string& error) {
    auto resolved = writeTarget(file, error);
    if (!resolved) return false;
    const fs::path& target = *resolved;
    fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::string temporary = (folder / ("." + target.filename().string() + ".jtk-XXXXXX")).string();
    int descriptor = ::mkstemp(temporary.data());
    if (descriptor < 0) {
        error = std::strerror(errno);
        return false;
    }
    // The original's permissions; those of a new file when it has gone meanwhile.
    struct stat original{};
    mode_t mode = ::stat(target.c_str(), &original) == 0 ? original.st_mode & 07777 : newFileMode();
    bool ok = writeAll(descriptor, text) && ::fchmod(descriptor, mode) == 0;
    ok = ok && ::fsync(descriptor) == 0;
    int savedErrno = errno;
    ok = ::close(descriptor) == 0 && ok;
    if (ok && ::rename(temporary.c_str(), target.c_str()) == 0) return true;
    error = std::strerror(errno ? errno : savedErrno);
    ::unlink(temporary.c_str());
    return false;
}

std::string jtkShellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

const char* jtkMarkerText(JTKDialect dialect) {
    switch (dialect) {
        case JTKDialect::swift: return "rec()";
        case JTKDialect::objectiveC: return "[self rec:@__FILE__];";
        case JTKDialect::cpp: return "// JTK is recording: statements go above this line";
    }
    return "";
}

std::string jtkRecordingMethodText(JTKDialect dialect, const std::string& number) {
    switch (dialect) {
        case JTKDialect::swift:
            return "    \n    class func testRecording" + number + "()\n    {\n        rec()\n    }";
        case JTKDialect::objectiveC:
            return "    \n+(void) testRecording" + number + "\n{\n    [self rec:@__FILE__];\n}";
        case JTKDialect::cpp:
            return "\nJTK_TEST(testRecording" + number + ") {\n    " + jtkMarkerText(dialect) + "\n}";
    }
    return {};
}

JTKRecordingMethodResult jtkInsertRecordingMethod(const fs::path& file, std::string& message) {
    using Result = JTKRecordingMethodResult;
    std::string error;
    auto text = jtkReadTextFile(file, error);
    if (!text) {
        message = "JTK: cannot read the test source file " + file.string() + " (" + error + "); nothing is recorded";
        return Result::unreadable;
    }
    JTKDialect dialect = jtkDialectOfFile(file);
    size_t earlier = countOccurrences(*text, "testRecording");
    auto method = splitLines(jtkRecordingMethodText(dialect, earlier ? std::to_string(earlier) : ""));
    // A byte-order mark stays the file's first bytes, in front of whatever goes first.
    bool marked = text->starts_with(byteOrderMark);
    auto lines = splitLines(marked ? text->substr(std::strlen(byteOrderMark)) : *text);
    const std::string foundationImport = "#import <Foundation/Foundation.h>";
    auto isImport = [&](const std::string& line) { return line == foundationImport || line == foundationImport + "\r"; };
    if (dialect == JTKDialect::objectiveC && std::none_of(lines.begin(), lines.end(), isImport))
        lines.insert(lines.begin(), foundationImport);

    auto contains = [](const std::string& part) { return [part](const std::string& line) { return line.find(part) != std::string::npos; }; };
    auto provider = std::find_if(lines.begin(), lines.end(), contains("jtkThisFilePath"));
    if (provider == lines.end()) return Result::noProviderLine;
    auto closing = std::find_if(provider, lines.end(), contains("}"));
    if (closing == lines.end()) {
        message = "JTK: no \"}\" follows the jtkThisFilePath line in " + file.string() + "; nothing is recorded";
        return Result::noClosingBrace;
    }
    lines.insert(closing + 1, method.begin(), method.end());
    if (!jtkWriteTextFileAtomically(file, (marked ? byteOrderMark : "") + joinLines(lines), error)) {
        message = cannotWrite(file, error) + "; nothing is recorded";
        return Result::unwritable;
    }
    return Result::inserted;
}

std::optional<JTKSourceFile> JTKSourceFile::open(const fs::path& file, std::string& message) {
    std::string error;
    auto text = jtkReadTextFile(file, error);
    if (!text) {
        message = "JTK: cannot read the test source file " + file.string() + " (" + error + "); nothing is recorded";
        return std::nullopt;
    }
    return JTKSourceFile(file, *text);
}

JTKSourceFile::JTKSourceFile(fs::path path, const std::string& text)
    : path_(std::move(path)), dialect_(jtkDialectOfFile(path_)), lines_(splitLines(text)) {}

std::optional<size_t> JTKSourceFile::markerLine() const {
    const std::string marker = jtkMarkerText(dialect_);
    for (size_t i = 0; i < lines_.size(); ++i)
        if (lines_[i].find(marker) != std::string::npos) return i;
    return std::nullopt;
}

bool JTKSourceFile::hasStatementToContinue() const {
    auto marker = markerLine();
    return marker && !editIndices_.empty() && editIndices_.back() < lines_.size() && editIndices_.back() != *marker;
}

JTKSourceFile::Write JTKSourceFile::insertStatement(const std::string& statement, bool chained) {
    auto marker = markerLine();
    if (!marker) return Write::unchanged;
    size_t at = *marker;
    if (!chained) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), removeAll(lines_[at], jtkMarkerText(dialect_)) + statement);
        editIndices_.push_back(at);
        return saveFile();
    }
    // A chained statement continues the previous statement's line and never the marker line.
    if (!hasStatementToContinue()) return Write::unchanged;
    size_t last = editIndices_.back();
    std::string line = lines_[last];
    switch (dialect_) {
        case JTKDialect::swift:
            line += statement;
            break;
        case JTKDialect::objectiveC: {
            // Only the statements' own final semicolons go: one inside a text literal stays.
            line = withoutTrailingSemicolons(line) + withoutTrailingSemicolons(statement);
            size_t bracket = line.find('[');
            if (bracket == std::string::npos) return Write::unchanged;
            line.insert(bracket, "[");
            line += ";";
            break;
        }
        case JTKDialect::cpp:
            line = withoutTrailingSemicolons(line) + statement;
            break;
    }
    lines_[last] = line;
    // The edited line is the one a later removal takes out.
    editIndices_.push_back(last);
    return saveFile();
}

JTKSourceFile::Write JTKSourceFile::removeLastStatement() {
    if (editIndices_.empty()) return Write::unchanged;
    size_t index = editIndices_.back();
    // A chained line is listed once per statement on it: it goes once.
    while (!editIndices_.empty() && editIndices_.back() == index) editIndices_.pop_back();
    if (index >= lines_.size() || index == markerLine()) return Write::unchanged;
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(index));
    return saveFile();
}

JTKSourceFile::Write JTKSourceFile::finish() {
    auto marker = markerLine();
    Write result = Write::unchanged;
    if (marker) {
        lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*marker));
        result = saveFile();
    }
    lines_.clear();
    editIndices_.clear();
    return result;
}

JTKSourceFile::Write JTKSourceFile::saveFile() {
    std::string error;
    if (!jtkWriteTextFileAtomically(path_, joinLines(lines_), error)) {
        failure_ = cannotWrite(path_, error) + "; the recording stops, the file keeps its last complete version";
        return Write::failed;
    }
    runShellCommand("touch " + jtkShellQuoted(path_.string()));
    return Write::written;
}

}  // namespace jtk
