// Property-list files through libplist: XML and binary property lists read
// into dynamic values, dictionaries written as XML property lists.
//
// Reading maps booleans, integers, reals, strings, arrays (lists) and
// dictionaries to the matching values; a date becomes its ISO 8601 text in UTC
// ("2024-05-01T12:00:00Z") and data its Base64 text, as the XML form writes
// them; a keyed-archive UID becomes an integer.
#pragma once

#include <filesystem>
#include <string>

#include "JTK/platform/UserDefaults.h"

namespace jtk::desktop {

// True when the value can be written to a property list: no none, no object
// references, dictionaries with text keys only. Otherwise reason says why.
bool isPropertyListValue(const platform::Value& value, std::string* reason = nullptr);

// Writes the dictionary (text keys, property-list values) as an XML property
// list. Atomic: a temporary file beside the target, then a rename; on failure
// the target is untouched and error tells why.
bool writePropertyListDictionary(const std::filesystem::path& path, const platform::ValueDictionary& dictionary,
                                 std::string& error);

}  // namespace jtk::desktop
