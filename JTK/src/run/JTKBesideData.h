// What a run keeps beside the Application Support folder it works on, all
// named after that folder: the record of the folder it put aside
// (".<name>.jtk-aside") and test data on its way out
// (".<name>.jtk-discard-<pid>"). The lock file is JTKDataFolderLock's.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "run/JTKFileTree.h"

namespace jtk {

// A name beside the data folder: "." + its name, cut to 200 bytes so that
// every suffix fits in a file name, + suffix.
std::filesystem::path jtkBesideData(const std::filesystem::path& appSupport, const std::string& suffix);

// Records that the folder with this identity is put aside; written and synced
// before the move, so that no crash can leave a folder aside without its
// record. Returns an error text when it could not.
std::string jtkWriteAsideRecord(const std::filesystem::path& appSupport, const JTKFileIdentity& identity);
void jtkRemoveAsideRecord(const std::filesystem::path& appSupport);

// True when the item at temp is the folder a test run recorded putting aside.
bool jtkPutAsideByARun(const std::filesystem::path& appSupport, const std::filesystem::path& temp);

// Moves the test data at appSupport out of the way, so that the user's data
// never waits for its delete; returns where it went.
std::optional<std::filesystem::path> jtkMoveToDiscard(const std::filesystem::path& appSupport,
                                                      std::error_code& error);
// Deletes test data moved out of the way; a line names what is left over.
void jtkDeleteDiscarded(const std::filesystem::path& discarded);
// Finishes the deletes that earlier runs' crashes cut short.
void jtkDeleteDiscardedByEarlierRuns(const std::filesystem::path& appSupport);

}  // namespace jtk
