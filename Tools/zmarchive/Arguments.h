#pragma once

#include <stdexcept>
#include <string>
#include <vector>

/// A command line that makes no sense; the text says why.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Arguments {
    enum Option : unsigned {
        FLAT = 1,
        FORCE = 2,
        REPLACE = 4,
        NAMES = 8,
        TO = 16,
        QUIET = 32,
        HELP = 64,
        VERSION = 128
    };

    std::string Command, Archive;
    std::vector<std::string> Rest;
    unsigned Options = 0;
    std::string Target = ".";

    bool Has(Option option) const { return (Options & option) != 0; }
    bool IsQuiet() const { return Has(QUIET); }
};

/// What a command takes: options, and how many arguments after the archive (-1 for any number).
struct Shape {
    const char* Command;
    unsigned Options;
    int Least, Most;
};

/// Throws UsageError for a command line that fits none of the shapes. Commands are not looked at with --help and
/// --version.
Arguments ParseArguments(int argc, char** argv, const std::vector<Shape>& shapes);
