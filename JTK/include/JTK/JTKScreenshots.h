// What the screenshots after each test take in, set from the tests' own code:
// a tests library loaded into a program whose launch arguments it cannot
// change sets them here, typically once in jtkSetup.
//
//   JTK_METHOD(jtkSetup) {
//       jtk::JTKScreenshots::setSizeThreshold(1000);  // small controls get pictures too
//       jtk::JTKScreenshots::leaveOut("Log");          // no pictures of the log and what it holds
//       jtk::JTKScreenshots::mask("Busy", jtk::JTKClass{"QProgressBar"});  // a flat box where it moves
//   }
//
// Views are named as a test finds elements (JTKTestSuite::elements): by a
// lookup string, optionally only views of a class. The lookups are resolved
// afresh at every capture, so a view that appears later is covered too, and
// a lookup that matches nothing leaves the pictures as they are. Settings
// hold for the rest of the run; any thread may change them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "JTK/JTKClass.h"

namespace jtk {

class JTKScreenshots {
public:
    JTKScreenshots() = delete;

    // The smallest PNG, in bytes, that is stored; none: back to 30000. A
    // launch argument fileSizeThresh=N that reads as a number wins, so a
    // person can still override the code from the command line.
    static void setSizeThreshold(std::optional<int64_t> bytes);
    // The threshold in force: the launch argument's, else the code's, else 30000.
    static int64_t sizeThreshold();

    // The views matching the lookup get no pictures of their own, nor do the
    // views inside them. The pictures of the views around them still show them.
    static void leaveOut(const std::string& lookup, std::optional<JTKClass> type = std::nullopt);

    // The area of each view matching the lookup is painted flat grey in its
    // own picture and in the picture of every view that contains it, and its
    // file name leaves out its value: a spinner, a clock or a blinking status
    // never changes a picture. The views inside it get no pictures.
    static void mask(const std::string& lookup, std::optional<JTKClass> type = std::nullopt);

    // Forgets every setting made here: nothing left out or masked, the
    // threshold of the launch argument or 30000.
    static void reset();
};

}  // namespace jtk
