// Writing a whole file so that a reader (or the next run, after a crash)
// finds the old content or the new, never half of either.
#pragma once

#include <filesystem>
#include <string>

namespace jtk {

// Writes the text to a temporary file beside the path, syncs it and renames
// it over the path (making the parent folders). Returns an empty text, or
// why it could not; nothing is left behind then.
std::string jtkWriteFileAtomically(const std::filesystem::path& path, const std::string& text);

}  // namespace jtk
