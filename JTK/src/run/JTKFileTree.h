// File-tree operations of the data environment, written so that the user's
// data cannot be hurt by them: nothing follows a symbolic link, nothing is
// renamed over something that exists, copies keep times and permissions, and
// removal copes with the read-only folders a test may leave behind.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <system_error>

namespace jtk {

// What lstat says identifies an item: its device and inode. A rename keeps it.
struct JTKFileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const JTKFileIdentity&) const = default;
};

// A name beside item made of prefix, item's name and suffix, within the
// 255 bytes a file name may have: item's name is shortened (the same way
// every time) when the whole would be longer.
std::filesystem::path jtkSiblingName(const std::filesystem::path& item, const std::string& prefix,
                                     const std::string& suffix);

// The item's identity (a link is itself, not its target); none when nothing is there.
std::optional<JTKFileIdentity> jtkIdentityOf(const std::filesystem::path& path);

// True when anything (file, folder, link, even a dangling one) is at path.
bool jtkExistsAt(const std::filesystem::path& path);

// Renames from to to, failing with EEXIST when anything is at to already.
std::error_code jtkRenameNoReplace(const std::filesystem::path& from, const std::filesystem::path& to);

// Renames from to the first free name of base, base_2, base_3, ... and
// returns the name it took; error when no name could be taken.
std::optional<std::filesystem::path> jtkRenameToFreeName(const std::filesystem::path& from,
                                                         const std::filesystem::path& base, std::error_code& error);

// Removes the item and, for a folder, everything below it. Folders that deny
// their owner access are opened up first; links are removed, never followed;
// other file systems mounted below are left alone. Goes on past failures and
// returns the first one.
std::error_code jtkRemoveTree(const std::filesystem::path& path);

// Copies the item to to (which must not exist): folders whole, links as
// links, files with their holes, each item with its permissions and
// modification time. A pipe, socket or device fails with
// std::errc::invalid_argument. When stop returns true the copy ends before
// its next item, or its next few megabytes of a file, with
// std::errc::operation_canceled.
std::error_code jtkCopyTree(const std::filesystem::path& from, const std::filesystem::path& to,
                            const std::function<bool()>& stop = {});

}  // namespace jtk
