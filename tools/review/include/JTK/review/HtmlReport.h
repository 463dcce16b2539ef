// The report of a screenshot root as one self-contained HTML file: every
// picture embedded as a data: URI, the style and the little script inline,
// and a content security policy that lets the page load nothing else, so it
// reads the same from a CI server's artefacts, a mail or a laptop offline.
//
// At the top, the counts; then one section per test that failed or has
// pending captures: its failure and failure pictures, and for each pending
// capture the accepted image, the new capture and the difference picture
// side by side, a picture that flips between accepted and new on a click,
// and the number of differing pixels. Once the page has loaded, its script
// checks that every picture shows and writes the result into the element
// with id "status" (data-images, data-shown).
#pragma once

#include <cstdint>
#include <string>

#include "JTK/review/ReportContents.h"

namespace jtk::review {

struct ReportSummary {
    // From the JUnit results (all zero without them).
    int tests = 0, passed = 0, failed = 0, errors = 0, skipped = 0;
    double seconds = 0;
    int failurePictures = 0;
    // From the store.
    int screenshotTests = 0;  // test folders
    int accepted = 0;
    int pending = 0;          // pending captures
    int differing = 0;        // of them, those whose pixels differ from their accepted image (or cannot be read)
    int withoutAccepted = 0;  // of them, those without an accepted image
    uint64_t differingPixels = 0;
    int stale = 0;
    int notRecorded = 0;  // test folders without a captured list
};

ReportSummary summarize(const ReportContents& report);

// The whole page.
std::string renderReport(const ReportContents& report);

// The page's fixed parts (ReportPage.cpp).
std::string reportHead(const std::string& title);
std::string reportTail();

}  // namespace jtk::review
