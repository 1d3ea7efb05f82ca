#include "Arguments.h"

#include <algorithm>
#include <iterator>

namespace {

const struct {
    const char* text;
    unsigned option;
} kOptions[] = {
    {"--flat", Arguments::FLAT},       {"--force", Arguments::FORCE}, {"--replace", Arguments::REPLACE},
    {"--names", Arguments::NAMES},     {"--to", Arguments::TO},       {"--quiet", Arguments::QUIET},
    {"--version", Arguments::VERSION}, {"--help", Arguments::HELP},   {"-h", Arguments::HELP},
};

const char* TextOf(unsigned option)
{
    return std::find_if(std::begin(kOptions), std::end(kOptions), [&](const auto& o) { return o.option == option; })
        ->text;
}

unsigned OptionOf(const std::string& text)
{
    const auto* const found =
        std::find_if(std::begin(kOptions), std::end(kOptions), [&](const auto& o) { return text == o.text; });
    if (found == std::end(kOptions)) {
        throw UsageError("unknown option '" + text + "'");
    }
    return found->option;
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
            const unsigned option = OptionOf(word);
            res.options |= option;
            if (option == Arguments::TO) {
                if (++i == argc) {
                    throw UsageError("--to needs a folder");
                }
                res.target = argv[i];
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
    if (count < shape.least) {
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
