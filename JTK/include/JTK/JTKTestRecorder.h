// The recorder that actions hand themselves to while a recording is under way.
#pragma once

#include <string>
#include <vector>

#include "JTK/JTKStringConvertable.h"

namespace jtk {

class JTKElement;

class JTKTestRecorder {
public:
    virtual ~JTKTestRecorder() = default;
    // Takes one action: the element it was called on (or none), its signature
    // text, its argument values, and whether it chains onto the previous statement.
    virtual void record(const JTKElement* element, const std::string& signature,
                        const std::vector<JTKStringConvertable>& arguments, bool chained) = 0;
    // Ends the recording: no more events are watched and nothing more is written.
    virtual void stop() {}
};

}  // namespace jtk
