// The languages a recording is written in and the source literal of each
// argument value in them: Swift and Objective-C, the two languages of the
// framework's interface, and C++ for test files written with JTK's macros.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "JTK/JTKStringConvertable.h"

namespace jtk {

enum class JTKDialect { swift, objectiveC, cpp };

// "swift" is Swift, the C++ extensions (.cpp .cc .cxx .c++ .hpp .hh) are C++,
// every other file is Objective-C.
JTKDialect jtkDialectOfFile(const std::filesystem::path& file);

// A double as the shortest text that reads back as the same value, with
// ".0" for whole numbers: 3.0, -2.0, 0.5, -0.0.
std::string jtkNumberLiteral(double value);

// The text between the quotes of a string literal of the dialect: quotes,
// backslashes and control characters escaped, everything else (UTF-8
// included) kept as it is.
std::string jtkEscapedText(std::string_view text, JTKDialect dialect);

std::string sourceLiteral(const JTKStringConvertable& value, JTKDialect dialect);
// True when the value's Swift literal is that of its type's default value,
// whatever the dialect being written.
bool isDefaultValue(const JTKStringConvertable& value);

}  // namespace jtk
