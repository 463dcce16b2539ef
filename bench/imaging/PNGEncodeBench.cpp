// PNG encoding of a screenshot pass: the 200 views of a window, at one and at
// two pixels per point (HiDPI), encoded by the imaging library and by libpng
// at its default settings and tuned for speed (zlib level 1, sub filter),
// rounds taken in turn so that all see the same machine load. Prints median
// wall and processor times (all threads), sizes and ratios, the cost per
// view of the small views (controls, most of a large window's views), and
// checks that the output is the same on every run and decodes to the same
// pixels.
#include <time.h>

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
using Views = std::vector<imaging::Image>;

double processorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

struct Pass {
    double wall = 0, processor = 0;
    size_t bytes = 0;
};

// One pass over the set.
Pass encodeAll(const Views& views, const Encoder& encode, std::vector<std::vector<uint8_t>>* keep = nullptr) {
    Pass pass;
    auto start = Clock::now();
    double processorStart = processorSeconds();
    for (const auto& view : views) {
        auto png = encode(view);
        pass.bytes += png.size();
        if (keep) keep->push_back(std::move(png));
    }
    pass.processor = processorSeconds() - processorStart;
    pass.wall = std::chrono::duration<double>(Clock::now() - start).count();
    return pass;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Contender {
    const char* name;
    Encoder encode;
    std::vector<double> wall, processor;
    size_t bytes = 0;
};

// Every contender over the set, `rounds` times in turn; answers the medians.
std::vector<Contender> race(const Views& views, int rounds) {
    std::vector<Contender> contenders{
        {"ours", [](const imaging::Image& image) { return imaging::encodePNG(image); }, {}, {}},
        {"libpng default", bench::encodeWithLibpng, {}, {}},
        {"libpng level 1 sub", bench::encodeWithLibpngFast, {}, {}}};
    for (int round = 0; round < rounds; ++round) {
        for (auto& contender : contenders) {
            Pass pass = encodeAll(views, contender.encode);
            contender.wall.push_back(pass.wall), contender.processor.push_back(pass.processor);
            contender.bytes = pass.bytes;
        }
    }
    return contenders;
}

bool report(const char* title, const Views& views, int rounds) {
    size_t pixels = 0;
    for (const auto& view : views) pixels += size_t{view.width} * view.height;
    std::printf("%s: %zu views, %.1f megapixels (medians of %d rounds)\n", title, views.size(), pixels / 1e6, rounds);
    auto contenders = race(views, rounds);
    for (const auto& c : contenders) {
        std::printf("  %-20s wall %8.1f ms   cpu %8.1f ms   %9zu bytes\n", c.name, median(c.wall) * 1e3,
                    median(c.processor) * 1e3, c.bytes);
    }
    const Contender &ours = contenders[0], &fallback = contenders[1], &fast = contenders[2];
    std::printf("  against libpng level 1 sub: size %.3f (goal <= 1), cpu %.2f (goal <= 0.5), wall %.2f\n",
                double(ours.bytes) / double(fast.bytes), median(ours.processor) / median(fast.processor),
                median(ours.wall) / median(fast.wall));
    std::printf("  against libpng default:     size %.3f, %.1fx faster (cpu)\n",
                double(ours.bytes) / double(fallback.bytes), median(fallback.processor) / median(ours.processor));

    std::vector<std::vector<uint8_t>> first, second;
    encodeAll(views, contenders[0].encode, &first);
    encodeAll(views, contenders[0].encode, &second);
    bool same = first == second, roundTrip = true;
    for (size_t i = 0; i < views.size(); ++i) roundTrip = roundTrip && imaging::decodePNG(first[i]) == views[i];
    std::printf("  same bytes on every run: %s; decodes to the same pixels: %s\n", same ? "yes" : "NO",
                roundTrip ? "yes" : "NO");
    return same && roundTrip;
}

// The small views (under 20,000 pixels) alone, many times over: the cost per
// view that a window of thousands of controls pays.
void reportSmallViews(const Views& views, int rounds) {
    Views small;
    for (int copy = 0; copy < 20; ++copy) {
        for (const auto& view : views) {
            if (size_t{view.width} * view.height < 20000) small.push_back(view);
        }
    }
    auto contenders = race(small, rounds);
    const Contender &ours = contenders[0], &fast = contenders[2];
    double perView = 1e6 / double(small.size());
    std::printf("small views: %zu encodes, per view: ours %.1f us cpu, libpng level 1 sub %.1f us (%.2f)\n",
                small.size(), median(ours.processor) * perView, median(fast.processor) * perView,
                median(ours.processor) / median(fast.processor));
}

}  // namespace

int main(int argc, char** argv) {
    int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    auto views = bench::makeViewSet(200);
    bool good = report("views", views, rounds);
    good = report("HiDPI views", bench::makeHiDPIViewSet(200), rounds) && good;
    reportSmallViews(views, rounds);
    return good ? 0 : 1;
}
