// The desktop's accessibility permission. The embedded desktop has no
// permission dialog, so the permission is simulated: the process is trusted
// until a test takes the trust away, and a check that would show the
// system's prompt is counted instead.
#pragma once

namespace jtk::desktop {

void setAccessibilityTrusted(bool trusted);
// How often a trust check with prompt found the process untrusted.
int accessibilityPromptCount();

}  // namespace jtk::desktop
