// Writes the files the peer comparison works on, into the folder given:
// accepted.png and new.png (3840x2160 screens differing in 1 % of their
// pixels) and copy.png (accepted.png's bytes), encoded by libpng at its
// default settings, so that no tool reads a file made by its own encoder; and
// reencoded.png, accepted.png's pixels in the imaging library's bytes.
#include <cstdio>
#include <fstream>
#include <string>

#include "JTK/imaging/PNG.h"
#include "LibpngReference.h"
#include "ScreenshotLikeImages.h"

using namespace jtk;

namespace {

bool writeFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: makeBenchImages FOLDER\n");
        return 2;
    }
    std::string folder = argv[1];
    auto accepted = bench::makeScreen(3840, 2160, 1);
    auto changed = accepted;
    uint64_t differing = bench::changeRegions(changed, 0.01, 2);
    auto acceptedPNG = bench::encodeWithLibpng(accepted);
    bool written = writeFile(folder + "/accepted.png", acceptedPNG) &&
                   writeFile(folder + "/new.png", bench::encodeWithLibpng(changed)) &&
                   writeFile(folder + "/copy.png", acceptedPNG) &&
                   writeFile(folder + "/reencoded.png", imaging::encodePNG(accepted));
    if (!written) {
        std::fprintf(stderr, "makeBenchImages: cannot write into %s\n", folder.c_str());
        return 2;
    }
    std::printf("%llu pixels differ\n", static_cast<unsigned long long>(differing));
    return 0;
}
