// jtk-diff ACCEPTED.png NEW.png [DIFF.png]: compares two PNG files pixel by
// pixel with no tolerance and prints how many pixels differ. Exit status 0
// when the pixels are equal, 1 when they differ (the difference picture is
// then written to DIFF.png when given), 2 on bad input or use.
#include <cstdio>

#include "JTK/imaging/FileDifference.h"

using jtk::imaging::FileDifference;

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) {
        std::fprintf(stderr, "usage: jtk-diff ACCEPTED.png NEW.png [DIFF.png]\n");
        return 2;
    }
    auto differencePath = argc == 4 ? std::optional<std::string>(argv[3]) : std::nullopt;
    FileDifference result = jtk::imaging::compareImageFiles(argv[1], argv[2], differencePath);
    if (result.outcome == FileDifference::Outcome::badInput) {
        std::fprintf(stderr, "jtk-diff: %s\n", result.error.c_str());
        return 2;
    }
    unsigned long long count = result.differingPixels;
    if (result.sizes.empty()) {
        std::printf("%llu %s\n", count, count == 1 ? "pixel differs" : "pixels differ");
    } else {
        std::printf("%llu %s; sizes differ: %s\n", count, count == 1 ? "pixel differs" : "pixels differ",
                    result.sizes.c_str());
    }
    return result.outcome == FileDifference::Outcome::equal ? 0 : 1;
}
