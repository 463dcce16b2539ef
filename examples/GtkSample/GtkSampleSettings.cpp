#include "GtkSampleSettings.h"

#include "JTK/platform/UserDefaults.h"

namespace gtksample {

std::string readUserName() {
    jtk::platform::Value userName = jtk::platform::standardUserDefaults().objectForKey("userName");
    const std::string* text = userName.text();
    return text ? *text : std::string();
}

}  // namespace gtksample
