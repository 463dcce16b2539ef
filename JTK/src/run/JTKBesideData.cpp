#include "run/JTKBesideData.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <vector>

#include "run/JTKConsole.h"

namespace jtk {

namespace fs = std::filesystem;

fs::path jtkBesideData(const fs::path& appSupport, const std::string& suffix) {
    std::string name = appSupport.filename().string().substr(0, 200);
    return appSupport.parent_path() / ("." + name + suffix);
}

namespace {

fs::path asideRecordFor(const fs::path& appSupport) { return jtkBesideData(appSupport, ".jtk-aside"); }
const std::string discardInfix = ".jtk-discard-";

std::optional<JTKFileIdentity> readAsideRecord(const fs::path& appSupport) {
    std::ifstream in(asideRecordFor(appSupport));
    std::string tag;
    unsigned long long device = 0, inode = 0;
    if (!(in >> tag >> device >> inode) || tag != "jtk-aside") return std::nullopt;
    return JTKFileIdentity{static_cast<dev_t>(device), static_cast<ino_t>(inode)};
}

}  // namespace

std::string jtkWriteAsideRecord(const fs::path& appSupport, const JTKFileIdentity& identity) {
    auto record = asideRecordFor(appSupport);
    auto partial = jtkBesideData(appSupport, ".jtk-aside.partial");
    std::string text = "jtk-aside " + std::to_string(identity.device) + " " + std::to_string(identity.inode) + "\n";
    int file = open(partial.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0644);
    bool written = file >= 0 && write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
                   fsync(file) == 0;
    std::error_code error(written ? 0 : errno, std::generic_category());
    if (file >= 0 && close(file) != 0 && written) error.assign(errno, std::generic_category());
    if (!error) fs::rename(partial, record, error);
    if (error) {
        std::error_code ignored;
        fs::remove(partial, ignored);
        return error.message();
    }
    if (int folder = open(record.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); folder >= 0) {
        fsync(folder);
        close(folder);
    }
    return {};
}

void jtkRemoveAsideRecord(const fs::path& appSupport) {
    std::error_code ignored;
    fs::remove(asideRecordFor(appSupport), ignored);
}

bool jtkPutAsideByARun(const fs::path& appSupport, const fs::path& temp) {
    auto recorded = readAsideRecord(appSupport);
    return recorded && jtkIdentityOf(temp) == recorded;
}

std::optional<fs::path> jtkMoveToDiscard(const fs::path& appSupport, std::error_code& error) {
    auto base = jtkBesideData(appSupport, discardInfix + std::to_string(getpid()));
    return jtkRenameToFreeName(appSupport, base, error);
}

void jtkDeleteDiscarded(const fs::path& discarded) {
    if (auto error = jtkRemoveTree(discarded)) {
        jtkPrintLine("Could not delete the test data at " + discarded.string() + ": " + error.message());
    }
}

void jtkDeleteDiscardedByEarlierRuns(const fs::path& appSupport) {
    std::string prefix = jtkBesideData(appSupport, discardInfix).filename().string();
    std::error_code error;
    std::vector<fs::path> leftovers;
    for (fs::directory_iterator it(appSupport.parent_path(), error), end; !error && it != end; it.increment(error)) {
        if (it->path().filename().string().starts_with(prefix)) leftovers.push_back(it->path());
    }
    for (const auto& leftover : leftovers) jtkDeleteDiscarded(leftover);
}


}  // namespace jtk
