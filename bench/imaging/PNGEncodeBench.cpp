// PNG encoding of a screenshot pass: the 200 views of a window, encoded by
// the imaging library and by libpng at its default settings, rounds taken in
// turn so that both see the same machine load. Prints the median times, the
// ratio, the sizes, and checks that the output is the same on every run and
// decodes to the same pixels.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "JTK/imaging/PNG.h"
#include "LibpngReference.h"
#include "ScreenshotLikeImages.h"

using namespace jtk;

namespace {

using Clock = std::chrono::steady_clock;
using Encoder = std::function<std::vector<uint8_t>(const imaging::Image&)>;

// One pass over the set: seconds taken and bytes written.
std::pair<double, size_t> encodeAll(const std::vector<imaging::Image>& views, const Encoder& encode,
                                    std::vector<std::vector<uint8_t>>* keep = nullptr) {
    size_t bytes = 0;
    auto start = Clock::now();
    for (const auto& view : views) {
        auto png = encode(view);
        bytes += png.size();
        if (keep) keep->push_back(std::move(png));
    }
    return {std::chrono::duration<double>(Clock::now() - start).count(), bytes};
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    auto views = bench::makeViewSet(200);
    size_t pixels = 0;
    for (const auto& view : views) pixels += size_t{view.width} * view.height;
    std::printf("%zu views, %.1f megapixels\n", views.size(), pixels / 1e6);

    Encoder ours = [](const imaging::Image& image) { return imaging::encodePNG(image); };
    std::vector<double> ourTimes, libpngTimes;
    size_t ourBytes = 0, libpngBytes = 0;
    for (int round = 0; round < rounds; ++round) {
        auto [ourTime, ourSize] = encodeAll(views, ours);
        auto [libpngTime, libpngSize] = encodeAll(views, bench::encodeWithLibpng);
        ourTimes.push_back(ourTime), libpngTimes.push_back(libpngTime);
        ourBytes = ourSize, libpngBytes = libpngSize;
    }
    double ourMedian = median(ourTimes), libpngMedian = median(libpngTimes);
    std::printf("encode, ours:    %8.1f ms  %9zu bytes\n", ourMedian * 1e3, ourBytes);
    std::printf("encode, libpng:  %8.1f ms  %9zu bytes\n", libpngMedian * 1e3, libpngBytes);
    std::printf("ratio: ours %.1fx faster, size %.2f of libpng's (median of %d rounds)\n",
                libpngMedian / ourMedian, double(ourBytes) / double(libpngBytes), rounds);

    std::vector<std::vector<uint8_t>> first, second;
    encodeAll(views, ours, &first);
    encodeAll(views, ours, &second);
    bool same = first == second, roundTrip = true;
    for (size_t i = 0; i < views.size(); ++i) roundTrip = roundTrip && imaging::decodePNG(first[i]) == views[i];
    std::printf("same bytes on every run: %s; decodes to the same pixels: %s\n", same ? "yes" : "NO",
                roundTrip ? "yes" : "NO");
    return same && roundTrip ? 0 : 1;
}
