// Comparing two PNG files pixel by pixel, as jtk-diff does: byte-identical
// files are equal without decoding (their headers are checked); otherwise both are decoded (in parallel)
// and compared exactly, at 16 bits per channel when either file has 16-bit
// samples, and the difference picture is written when a path is given.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace jtk::imaging {

struct FileDifference {
    enum class Outcome { equal, different, badInput };
    Outcome outcome = Outcome::badInput;
    uint64_t differingPixels = 0;  // marked in the difference picture (the accepted image's extent)
    std::string sizes;             // "WxH and WxH" when the sizes differ, else empty
    std::string error;             // one line naming the file and the reason, for badInput
};

// Compares the files; writes the difference picture (replacing the file, never
// leaving half a file) only when they differ and a path is given.
FileDifference compareImageFiles(const std::string& acceptedPath, const std::string& newPath,
                                 const std::optional<std::string>& differencePath = std::nullopt);

}  // namespace jtk::imaging
