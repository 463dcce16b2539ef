// Writing a whole file so that a reader sees the old file or the complete
// new one, never a part: the bytes go to a temporary file beside the target,
// which is renamed over it once written and closed.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace jtk::review {

// True when written; otherwise false with one line naming the file and the
// reason in error, and nothing left behind.
bool writeFileAtomically(const std::filesystem::path& path, std::string_view bytes, std::string* error);

// The whole file, or false with one line naming the file and the reason.
bool readWholeFile(const std::filesystem::path& path, std::string& bytes, std::string* error);

}  // namespace jtk::review
