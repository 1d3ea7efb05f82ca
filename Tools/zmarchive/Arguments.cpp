#include "Arguments.h"

#include "Tool.h"

#include <algorithm>
#include <iterator>

namespace {

void SetClash(Arguments& res, const std::string& value)
{
    static const char* const kNames[] = {"fail", "skip", "rename"};
    const auto found = std::find(std::begin(kNames), std::end(kNames), value);
    if (found == std::end(kNames)) {
        throw UsageError("--clash is fail, skip or rename, not '" + value + "'");
    }
    res.clash = Arguments::Clash(found - std::begin(kNames));
}

const struct {
    const char* text;
    unsigned option;
    /// Unless null, what the word after the option is, and where it goes.
    const char* value;
    void (*set)(Arguments& res, const std::string& value);
} kOptions[] = {
    {"--flat", Arguments::FLAT, nullptr, nullptr},
    {"--force", Arguments::FORCE, nullptr, nullptr},
    {"--replace", Arguments::REPLACE, nullptr, nullptr},
    {"--names", Arguments::NAMES, nullptr, nullptr},
    {"--json", Arguments::JSON, nullptr, nullptr},
    {"--sha256", Arguments::SHA256, nullptr, nullptr},
    {"--quiet", Arguments::QUIET, nullptr, nullptr},
    {"--version", Arguments::VERSION, nullptr, nullptr},
    {"--help", Arguments::HELP, nullptr, nullptr},
    {"-h", Arguments::HELP, nullptr, nullptr},
    {"--to", Arguments::TO, "a folder", [](Arguments& res, const std::string& value) { res.target = value; }},
    {"--from", Arguments::FROM, "a list", [](Arguments& res, const std::string& value) { res.from = value; }},
    {"--against", Arguments::AGAINST, "a list", [](Arguments& res, const std::string& value) { res.against = value; }},
    {"--clash", Arguments::CLASH, "fail, skip or rename", SetClash},
};

const char* TextOf(unsigned option)
{
    return std::find_if(std::begin(kOptions), std::end(kOptions), [&](const auto& o) { return o.option == option; })
        ->text;
}

const auto& OptionOf(const std::string& text)
{
    const auto* const found =
        std::find_if(std::begin(kOptions), std::end(kOptions), [&](const auto& o) { return text == o.text; });
    if (found == std::end(kOptions)) {
        throw UsageError("unknown option '" + text + "'");
    }
    return *found;
}

/// Stores the options in `res` and returns all other words.
std::vector<std::string> TakeOptions(int argc, char** argv, Arguments& res)
{
    std::vector<std::string> words;
    bool options = true;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (options && word == "--") {
            options = false;
        } else if (!options || word.size() < 2 || word[0] != '-') {
            words.push_back(word);
        } else {
            const auto& option = OptionOf(word);
            res.options |= option.option;
            if (option.value != nullptr) {
                if (++i == argc) {
                    throw UsageError(word + " needs " + option.value);
                }
                option.set(res, argv[i]);
            }
        }
    }
    return words;
}

void Check(const Arguments& arguments, const Shape& shape)
{
    for (unsigned option = 1; option <= Arguments::VERSION; option *= 2) {
        if ((arguments.options & ~shape.options & ~unsigned(Arguments::QUIET) & option) != 0) {
            throw UsageError(arguments.command + " does not take " + TextOf(option));
        }
    }
    if (arguments.archive.empty()) {
        throw UsageError(arguments.command + " needs an archive");
    }
    const int count = int(arguments.rest.size());
    if (count < shape.least && !arguments.Has(Arguments::FROM)) {
        throw UsageError(arguments.command + " needs more arguments");
    }
    if (shape.most >= 0 && count > shape.most) {
        throw UsageError(arguments.command + " does not take '" + arguments.rest[size_t(shape.most)] + "'");
    }
}

}  // namespace

Arguments ParseArguments(int argc, char** argv, const std::vector<Shape>& shapes)
{
    Arguments res;
    const std::vector<std::string> words = TakeOptions(argc, argv, res);
    if (res.Has(Arguments::HELP) || res.Has(Arguments::VERSION)) {
        return res;
    }
    if (words.empty()) {
        throw UsageError("no command given");
    }
    res.command = words[0];
    if (words.size() > 1) {
        res.archive = words[1];
        res.rest.assign(words.begin() + 2, words.end());
    }
    const auto shape =
        std::find_if(shapes.begin(), shapes.end(), [&](const Shape& s) { return res.command == s.command; });
    if (shape == shapes.end()) {
        throw UsageError("unknown command '" + res.command + "'");
    }
    Check(res, *shape);
    return res;
}
