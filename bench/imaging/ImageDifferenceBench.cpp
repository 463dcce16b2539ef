// The difference picture of two 3840x2160 screens that differ in 1 % of
// their pixels, in its phases: decode both, compare, encode the picture;
// with libpng doing the same decode and encode as the reference. In memory,
// so the figures leave out process start and file reading, which
// bench/compare-peers.sh measures end to end; and files compared in process:
// two byte-identical ones, and two with the same pixels in other bytes, with
// and without a picture path (which should cost the same: nothing to draw).
#include <png.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

#include "JTK/imaging/FileDifference.h"
#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"
#include "LibpngReference.h"
#include "ScreenshotLikeImages.h"

using namespace jtk;

namespace {

using Clock = std::chrono::steady_clock;

template <typename Work>
double millisecondsOf(Work work, int rounds) {
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        auto start = Clock::now();
        work();
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

imaging::Image decodeWithLibpng(const std::vector<uint8_t>& bytes) {
    png_image decoded;
    std::memset(&decoded, 0, sizeof decoded);
    decoded.version = PNG_IMAGE_VERSION;
    png_image_begin_read_from_memory(&decoded, bytes.data(), bytes.size());
    decoded.format = PNG_FORMAT_RGBA;
    imaging::Image image(decoded.width, decoded.height);
    png_image_finish_read(&decoded, nullptr, image.pixels.data(), 0, nullptr);
    return image;
}

}  // namespace

int main(int argc, char** argv) {
    int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    auto accepted = bench::makeScreen(3840, 2160, 1);
    auto changed = accepted;
    bench::changeRegions(changed, 0.01, 2);
    auto acceptedPNG = bench::encodeWithLibpng(accepted), newPNG = bench::encodeWithLibpng(changed);

    imaging::Image a, b, picture;
    uint64_t differing = 0;
    double decodeOne = millisecondsOf([&] { a = *imaging::decodePNG(acceptedPNG); }, rounds);
    double decodeBoth = millisecondsOf([&] {
        std::thread other([&] { b = *imaging::decodePNG(newPNG); });
        a = *imaging::decodePNG(acceptedPNG);
        other.join();
    }, rounds);
    double compare = millisecondsOf([&] { picture = imaging::imageDifference(a, b, &differing); }, rounds);
    double count = millisecondsOf([&] { differing = imaging::countDifferingPixels(a, b); }, rounds);
    std::vector<uint8_t> encoded;
    double encode = millisecondsOf([&] { encoded = imaging::encodePNG(picture); }, rounds);
    double libpngDecode = millisecondsOf([&] { a = decodeWithLibpng(acceptedPNG); }, rounds);
    double libpngEncode = millisecondsOf([&] { encoded = bench::encodeWithLibpng(picture); }, rounds);
    double pictureRows = millisecondsOf([&] { encoded = imaging::imageDifferencePNG(a, b, &differing); }, rounds);

    // Files as jtk-diff sees them: two byte-identical ones (read both,
    // compare bytes), and one with the same pixels in other bytes (our
    // encoder's), compared with and without a path for the picture.
    auto folder = std::filesystem::temp_directory_path() / "jtk-image-difference-bench";
    std::filesystem::create_directories(folder);
    auto path = [&](const char* name) { return (folder / name).string(); };
    auto ourPNG = imaging::encodePNG(accepted);
    for (auto [name, bytes] : {std::pair{"a.png", &acceptedPNG}, {"b.png", &acceptedPNG}, {"c.png", &ourPNG}}) {
        std::ofstream(folder / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes->data()), std::streamsize(bytes->size()));
    }
    double identical = millisecondsOf([&] { imaging::compareImageFiles(path("a.png"), path("b.png")); }, rounds);
    double samePixels = 0, samePixelsWithPath = 0;
    // In turn, so that both see the same load, and each first in every other
    // round: the first of a pair pays more for fresh memory.
    for (int round = 0; round < 2 * rounds; ++round) {
        auto without = [&] {
            samePixels += millisecondsOf([&] { imaging::compareImageFiles(path("a.png"), path("c.png")); }, 1);
        };
        auto with = [&] {
            samePixelsWithPath += millisecondsOf([&] {
                imaging::compareImageFiles(path("a.png"), path("c.png"), path("picture.png"));
            }, 1);
        };
        if (round % 2) without(), with();
        else with(), without();
    }
    bool pictureLeft = std::filesystem::exists(folder / "picture.png");
    std::filesystem::remove_all(folder);

    std::printf("%llu of %u pixels differ\n", static_cast<unsigned long long>(differing), 3840u * 2160u);
    std::printf("decode one:      %7.1f ms   (libpng %7.1f ms, %.1fx)\n", decodeOne, libpngDecode,
                libpngDecode / decodeOne);
    std::printf("decode both:     %7.1f ms   (two threads)\n", decodeBoth);
    std::printf("compare:         %7.1f ms   (count only %.1f ms)\n", compare, count);
    std::printf("encode picture:  %7.1f ms   (libpng %7.1f ms, %.1fx)\n", encode, libpngEncode, libpngEncode / encode);
    std::printf("compare+encode:  %7.1f ms   (row by row, no whole picture)\n", pictureRows);
    std::printf("end to end:      %7.1f ms   (libpng codec, one thread: %.1f ms, %.1fx)\n",
                decodeBoth + pictureRows, 2 * libpngDecode + compare + libpngEncode,
                (2 * libpngDecode + compare + libpngEncode) / (decodeBoth + pictureRows));
    std::printf("identical files: %7.2f ms   (%zu bytes each, read and compared)\n", identical, acceptedPNG.size());
    std::printf("same pixels, other bytes: %.1f ms with a picture path, %.1f ms without (%.2fx; mean of %d)%s\n",
                samePixelsWithPath / (2 * rounds), samePixels / (2 * rounds), samePixelsWithPath / samePixels,
                2 * rounds,
                pictureLeft ? "; a PICTURE WAS WRITTEN" : "");
    return pictureLeft ? 1 : 0;
}
