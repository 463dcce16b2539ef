// The GTK sample's settings: the user's name, from the application's
// defaults, where a UI test run loads its test defaults.
#pragma once

#include <string>

namespace gtksample {

// The stored user name; empty when none is stored.
std::string readUserName();

}  // namespace gtksample
