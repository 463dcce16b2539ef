// Property-list files through libplist: XML and binary property lists read
// into dynamic values, dictionaries written as XML property lists.
//
// Reading maps booleans, integers, reals, strings, dates, data, arrays
// (lists) and dictionaries to the matching values, each keeping its kind; a
// keyed-archive UID becomes an integer. Writing maps them back.
#pragma once

#include <filesystem>
#include <string>

#include "JTK/platform/UserDefaults.h"

namespace jtk::services {

// True when the value can be written to a property list: no none, no object
// references, dictionaries with text keys only. Otherwise reason says why.
bool isPropertyListValue(const platform::Value& value, std::string* reason = nullptr);

// Writes the dictionary (text keys, property-list values) as an XML property
// list. Atomic: a temporary file beside the target, then a rename; on failure
// the target is untouched and error tells why.
bool writePropertyListDictionary(const std::filesystem::path& path, const platform::ValueDictionary& dictionary,
                                 std::string& error);

}  // namespace jtk::services
