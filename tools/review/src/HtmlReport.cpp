// The report's page: the counts, the table of tests and one section per test
// that needs a look.
#include "JTK/review/HtmlReport.h"

#include <algorithm>
#include <cstdio>

#include "JTK/review/HtmlText.h"

namespace jtk::review {

namespace {

using Result = JUnitCase::Result;

bool differs(const PendingPair& pair) {
    return pair.accepted && (pair.differingPixels || !pair.sizes.empty() || !pair.accepted->error.empty() ||
                             !pair.pending.error.empty());
}

// The worst result of a test's cases: error, failed, skipped, passed.
std::optional<Result> worst(const ReportTest& test) {
    std::optional<Result> result;
    static constexpr Result order[] = {Result::passed, Result::skipped, Result::failed, Result::error};
    auto rank = [](Result r) { return std::find(std::begin(order), std::end(order), r) - std::begin(order); };
    for (const auto& testCase : test.results)
        if (!result || rank(testCase.result) > rank(*result)) result = testCase.result;
    return result;
}

bool needsALook(const ReportTest& test) {
    auto result = worst(test);
    return !test.pairs.empty() || !test.attachments.empty() ||
           (result && (*result == Result::failed || *result == Result::error));
}

std::string countItem(const char* key, const std::string& label, const std::string& value, const char* tone = "") {
    return std::string("<li class=\"") + tone + "\"><b data-count=\"" + key + "\">" + value + "</b>" + label + "</li>";
}

std::string resultBadge(Result result) {
    return std::string("<span class=\"result ") + resultName(result) + "\">" + resultName(result) + "</span>";
}

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const auto& name : names) text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string anchor(size_t index) { return "test-" + std::to_string(index + 1); }

std::string figure(const char* kind, const std::string& caption, const Picture& picture) {
    std::string html = std::string("<figure class=\"") + kind + "\"><figcaption>" + caption + "</figcaption>";
    if (!picture.png.empty())
        html += "<img alt=\"" + escapeHtml(caption) + "\" src=\"" + pngDataUri(picture.png) + "\">";
    else
        html += "<div class=\"missing\">" + escapeHtml(picture.error.empty() ? "no picture" : picture.error) + "</div>";
    return html + "</figure>";
}

std::string pixelCount(const PendingPair& pair) {
    if (!pair.accepted) return "no accepted image: a new view";
    if (pair.accepted->png.empty() || pair.pending.png.empty()) return "cannot be compared";
    std::string text = groupedNumber(pair.differingPixels) + " of " + groupedNumber(pair.pixels) +
                       (pair.differingPixels == 1 ? " pixel differs" : " pixels differ");
    if (pair.pixels) {
        char percent[32];
        std::snprintf(percent, sizeof percent, " (%.2f%%)", 100.0 * double(pair.differingPixels) / double(pair.pixels));
        text += percent;
    }
    if (!pair.sizes.empty()) text += "; sizes differ: " + pair.sizes;
    return text;
}

std::string pairSection(const PendingPair& pair) {
    std::string html = "<div class=\"pair\"><h3>" +
                       escapeHtml(pair.file) + " <span class=\"note\" data-pixels=\"" +
                       std::to_string(pair.differingPixels) + "\">" + escapeHtml(pixelCount(pair)) +
                       "</span></h3><div class=\"pictures\">";
    if (pair.accepted) html += figure("accepted", "accepted", *pair.accepted);
    html += figure("pending", "new", pair.pending);
    bool difference = !pair.difference.png.empty() || !pair.difference.error.empty();
    if (pair.accepted && difference) html += figure("difference", "difference (red: differs)", pair.difference);
    if (pair.accepted && !pair.accepted->png.empty() && !pair.pending.png.empty())
        html += "<figure class=\"flip\"><figcaption>click to flip: <span>accepted</span></figcaption>"
                "<img alt=\"accepted and new, flipped by a click\"></figure>";
    return html + "</div></div>\n";
}

std::string testSection(const ReportTest& test, size_t index) {
    std::string html = "<section class=\"test\" id=\"" + anchor(index) + "\"><h2>" + escapeHtml(test.tag);
    if (auto result = worst(test)) html += " " + resultBadge(*result);
    html += "</h2>\n";
    for (const auto& testCase : test.results) {
        if (test.results.size() > 1 || testCase.result != Result::passed)
            html += "<p>" + escapeHtml(testCase.suite + " " + testCase.name) + ": " + resultBadge(testCase.result) +
                    " in " + duration(testCase.seconds) + (testCase.message.empty() ? "" : " — " + escapeHtml(testCase.message)) +
                    "</p>\n";
        if (!testCase.details.empty()) html += "<pre>" + escapeHtml(testCase.details) + "</pre>\n";
    }
    if (!test.stale.empty())
        html += "<p class=\"note\">Not captured by the last run (stale): " + escapeHtml(joined(test.stale)) + "</p>\n";
    std::string attached;
    for (const auto& picture : test.attachments)
        if (picture.pairFile.empty()) attached += figure("attachment", escapeHtml(picture.path), picture.picture);
    if (!attached.empty()) html += "<h3>Pictures at the failure</h3><div class=\"pictures\">" + attached + "</div>\n";
    for (const auto& pair : test.pairs) html += pairSection(pair);
    return html + "</section>\n";
}

std::string testRow(const ReportTest& test, size_t index) {
    auto result = worst(test);
    double seconds = 0;
    for (const auto& testCase : test.results) seconds += testCase.seconds;
    uint64_t pixels = 0;
    for (const auto& pair : test.pairs) pixels += pair.differingPixels;
    std::string name = needsALook(test) ? "<a href=\"#" + anchor(index) + "\">" + escapeHtml(test.tag) + "</a>"
                                        : escapeHtml(test.tag);
    std::string row = "<tr><td>" + name + "</td><td>" + (result ? resultBadge(*result) : "") + "</td><td class=\"n\">" +
                      (test.results.empty() ? "" : duration(seconds)) + "</td>";
    if (!test.hasFolder) return row + "<td class=\"n\" colspan=\"4\">no screenshots</td></tr>\n";
    return row + "<td class=\"n\">" + std::to_string(test.accepted) + "</td><td class=\"n\">" +
           std::to_string(test.pairs.size()) + "</td><td class=\"n\">" + groupedNumber(pixels) +
           "</td><td class=\"n\" title=\"" + escapeHtml(joined(test.stale)) + "\">" +
           (test.recorded ? std::to_string(test.stale.size()) : "not recorded") + "</td></tr>\n";
}

}  // namespace

ReportSummary summarize(const ReportContents& report) {
    ReportSummary summary;
    if (report.junit) {
        const auto& junit = *report.junit;
        summary.tests = int(junit.cases.size());
        summary.passed = junit.count(Result::passed);
        summary.failed = junit.count(Result::failed);
        summary.errors = junit.count(Result::error);
        summary.skipped = junit.count(Result::skipped);
        summary.seconds = junit.seconds();
    }
    for (const auto& test : report.tests) {
        for (const auto& picture : test.attachments) summary.failurePictures += picture.pairFile.empty();
        if (!test.hasFolder) continue;
        ++summary.screenshotTests;
        summary.accepted += int(test.accepted);
        summary.pending += int(test.pairs.size());
        for (const auto& pair : test.pairs) {
            summary.differing += differs(pair);
            summary.withoutAccepted += !pair.accepted;
            summary.differingPixels += pair.differingPixels;
        }
        summary.stale += int(test.stale.size());
        summary.notRecorded += !test.recorded;
    }
    return summary;
}

std::string renderReport(const ReportContents& report) {
    auto s = summarize(report);
    auto folder = report.root.has_filename() ? report.root.filename() : report.root.parent_path().filename();
    std::string title = "Screenshots " + report.version + " — " + folder.string();
    std::string html = reportHead(title) + "<h1>Screenshot report</h1>\n<p class=\"where\">screenshots " +
                       escapeHtml((report.root / report.version).string()) +
                       (report.junitFile ? " · results " + escapeHtml(report.junitFile->string()) : "") + "</p>\n";
    if (!report.hasVersionFolder)
        html += "<p class=\"missing\">No screenshots of version " + escapeHtml(report.version) + " in " +
                escapeHtml(report.root.string()) + ".</p>\n";
    if (report.junit)
        html += "<ul class=\"counts\">" + countItem("tests", "tests run", std::to_string(s.tests)) +
                countItem("passed", "passed", std::to_string(s.passed), "ok") +
                countItem("failed", "failed", std::to_string(s.failed), s.failed ? "bad" : "") +
                countItem("errors", "errors", std::to_string(s.errors), s.errors ? "bad" : "") +
                countItem("skipped", "skipped", std::to_string(s.skipped), s.skipped ? "warn" : "") +
                countItem("seconds", "in all", duration(s.seconds)) +
                countItem("failurePictures", "failure pictures", std::to_string(s.failurePictures)) + "</ul>\n";
    html += "<ul class=\"counts\">" + countItem("screenshotTests", "tests with screenshots", std::to_string(s.screenshotTests)) +
            countItem("accepted", "accepted images", std::to_string(s.accepted)) +
            countItem("pending", "pending captures", std::to_string(s.pending), s.pending ? "warn" : "") +
            countItem("differing", "differ from accepted", std::to_string(s.differing), s.differing ? "bad" : "ok") +
            countItem("withoutAccepted", "without accepted image", std::to_string(s.withoutAccepted)) +
            countItem("differingPixels", "differing pixels", groupedNumber(s.differingPixels)) +
            countItem("stale", "stale images", std::to_string(s.stale), s.stale ? "warn" : "") +
            countItem("notRecorded", "tests not recorded", std::to_string(s.notRecorded)) + "</ul>\n";
    html += "<p><span id=\"status\">Checking the pictures…</span> "
            "<label>Zoom <select id=\"zoom\"><option value=\"1\">1×</option><option value=\"2\">2×</option>"
            "<option value=\"3\">3×</option><option value=\"4\">4×</option></select></label></p>\n";
    if (report.tests.empty()) html += "<p>No tests: the version folder is empty and there are no results.</p>\n";
    if (!report.tests.empty()) {
        html += "<table><thead><tr><th>test</th><th>result</th><th>time</th><th>accepted</th><th>pending</th>"
                "<th>differing pixels</th><th>stale</th></tr></thead><tbody>\n";
        for (size_t i = 0; i < report.tests.size(); ++i) html += testRow(report.tests[i], i);
        html += "</tbody></table>\n";
    }
    for (size_t i = 0; i < report.tests.size(); ++i)
        if (needsALook(report.tests[i])) html += testSection(report.tests[i], i);
    return html + reportTail();
}

}  // namespace jtk::review
