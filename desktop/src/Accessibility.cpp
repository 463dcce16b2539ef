#include "JTK/desktop/Accessibility.h"

#include <atomic>

#include "JTK/platform/Process.h"

namespace jtk::desktop {

namespace {

std::atomic<bool> trusted{true};
std::atomic<int> promptCount{0};

}  // namespace

void setAccessibilityTrusted(bool isTrusted) { trusted = isTrusted; }

int accessibilityPromptCount() { return promptCount.load(); }

}  // namespace jtk::desktop

namespace jtk::platform {

bool isProcessTrusted() { return desktop::trusted.load(); }

bool isProcessTrustedWithOptions(bool prompt) {
    bool isTrusted = desktop::trusted.load();
    if (prompt && !isTrusted) ++desktop::promptCount;
    return isTrusted;
}

}  // namespace jtk::platform
