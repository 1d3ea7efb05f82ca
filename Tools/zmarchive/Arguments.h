#pragma once

#include <stdexcept>
#include <string>
#include <vector>

/// An invalid command line; the text says why.
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

    std::string command, archive;
    std::vector<std::string> rest;
    unsigned options = 0;
    std::string target = ".";

    bool Has(Option option) const { return (options & option) != 0; }
    bool IsQuiet() const { return Has(QUIET); }
};

/// What a command accepts: its options, and how many arguments after the archive (-1 for any number).
struct Shape {
    const char* command;
    unsigned options;
    int least, most;
};

/// Throws UsageError if the command line fits none of the shapes. With --help or --version the command is not checked.
Arguments ParseArguments(int argc, char** argv, const std::vector<Shape>& shapes);
