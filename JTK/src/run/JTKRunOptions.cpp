// Reading the runner's launch options. An unknown "--jtk-" option or a value
// that does not parse is an error that names the option: a typo must not
// silently run every test.
#include "run/JTKRunOptions.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include "JTK/platform/Process.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view prefix = "--jtk-";

std::optional<int> parseCount(std::string_view text) {
    int value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0) return std::nullopt;
    return value;
}

std::optional<double> parseSeconds(const std::string& text) {
    char* end = nullptr;
    double value = std::strtod(text.c_str(), &end);
    if (text.empty() || end != text.c_str() + text.size() || !std::isfinite(value) || value <= 0) return std::nullopt;
    return value;
}

struct Reader {
    JTKRunOptionsResult& result;
    bool shardIndexGiven = false, shardCountGiven = false;

    void error(const std::string& line) { result.errors.push_back(line); }

    // One "--jtk-name" or "--jtk-name=value".
    void read(const std::string& argument) {
        auto equals = argument.find('=');
        std::string name = argument.substr(0, equals);
        bool hasValue = equals != std::string::npos;
        std::string value = hasValue ? argument.substr(equals + 1) : std::string();
        auto& options = result.options;
        auto needsValue = [&] {
            if (!hasValue || value.empty()) error("JTK: the option " + name + " needs a value: " + name + "=...");
            return hasValue && !value.empty();
        };
        auto takesNoValue = [&] {
            if (hasValue) error("JTK: the option " + name + " takes no value (given \"" + value + "\")");
            return !hasValue;
        };
        if (name == "--jtk-list") {
            if (takesNoValue()) options.list = true;
        } else if (name == "--jtk-strict") {
            if (takesNoValue()) options.strict = true;
        } else if (name == "--jtk-ci") {
            if (takesNoValue()) options.ci = options.strict = true;
        } else if (name == "--jtk-filter") {
            if (hasValue) options.filter = value;
        } else if (name == "--jtk-shard-index" || name == "--jtk-shard-count") {
            if (!needsValue()) return;
            auto count = parseCount(value);
            if (!count) return error("JTK: " + name + " needs a whole number, not \"" + value + "\"");
            (name == "--jtk-shard-index" ? options.shardIndex : options.shardCount) = *count;
            (name == "--jtk-shard-index" ? shardIndexGiven : shardCountGiven) = true;
        } else if (name == "--jtk-junit") {
            if (needsValue()) options.junitFile = fs::absolute(value);
        } else if (name == "--jtk-results") {
            if (needsValue()) options.resultsFolder = fs::absolute(value);
        } else if (name == "--jtk-timeout") {
            if (!needsValue()) return;
            options.timeLimit = parseSeconds(value);
            if (!options.timeLimit) error("JTK: --jtk-timeout needs a number of seconds above 0, not \"" + value + "\"");
        } else if (name == "--jtk-record") {
            if (takesNoValue()) options.record = true;
        } else if (name == "--jtk-tests") {
            // The tests library of a loaded program; the loader reads it.
        } else {
            error("JTK: unknown option " + name +
                  "; the options are --jtk-list, --jtk-filter=, --jtk-shard-index=, --jtk-shard-count=, --jtk-strict, "
                  "--jtk-ci, --jtk-junit=, --jtk-results=, --jtk-timeout=, --jtk-record and --jtk-tests=");
        }
    }

    void readShardVariable(const JTKEnvironment& environment, const char* variable, int& target, bool given) {
        if (given) return;
        auto text = environment(variable);
        if (!text || text->empty()) return;
        auto count = parseCount(*text);
        if (!count) return error("JTK: " + std::string(variable) + " needs a whole number, not \"" + *text + "\"");
        target = *count;
    }
};

}  // namespace

std::optional<fs::path> JTKRunOptions::picturesFolder() const {
    if (resultsFolder) return *resultsFolder;
    if (junitFile) return junitFile->parent_path();
    return std::nullopt;
}

JTKRunOptionsResult jtkParseRunOptions(const std::vector<std::string>& arguments, const JTKEnvironment& environment) {
    JTKRunOptionsResult result;
    Reader reader{result};
    // Arguments come last so that they win over JTK_OPTIONS.
    if (auto variable = environment("JTK_OPTIONS")) {
        std::istringstream words(*variable);
        std::string word;
        while (words >> word) {
            if (word.starts_with(prefix)) reader.read(word);
            else reader.error("JTK: JTK_OPTIONS holds \"" + word + "\", which is not a --jtk- option");
        }
    }
    for (const auto& argument : arguments)
        if (argument.starts_with(prefix)) reader.read(argument);
    reader.readShardVariable(environment, "JTK_SHARD_INDEX", result.options.shardIndex, reader.shardIndexGiven);
    reader.readShardVariable(environment, "JTK_SHARD_COUNT", result.options.shardCount, reader.shardCountGiven);
    const auto& options = result.options;
    if (options.shardCount < 1) reader.error("JTK: the shard count must be at least 1");
    else if (options.shardIndex >= options.shardCount)
        reader.error("JTK: shard index " + std::to_string(options.shardIndex) + " is not below the shard count " +
                     std::to_string(options.shardCount) + " (shards are numbered from 0)");
    return result;
}

namespace {

const JTKRunOptionsResult& processOptions() {
    static const JTKRunOptionsResult result = jtkParseRunOptions(
        platform::processArguments(), [](const char* name) -> std::optional<std::string> {
            const char* value = std::getenv(name);
            if (!value) return std::nullopt;
            return std::string(value);
        });
    return result;
}

}  // namespace

const JTKRunOptions& jtkRunOptions() { return processOptions().options; }

const std::vector<std::string>& jtkRunOptionErrors() { return processOptions().errors; }

}  // namespace jtk
