#pragma once

#include <string>
#include <vector>

struct Arguments {
    enum Option : unsigned {
        FLAT = 1,
        FORCE = 2,
        REPLACE = 4,
        NAMES = 8,
        TO = 16,
        FROM = 32,
        CLASH = 64,
        JSON = 128,
        SHA256 = 256,
        AGAINST = 512,
        QUIET = 1024,
        HELP = 2048,
        VERSION = 4096
    };

    /// What becomes of a file that cannot have its own name in the archive.
    enum Clash {
        FAIL,
        SKIP,
        RENAME
    };

    std::string command, archive;
    std::vector<std::string> rest;
    unsigned options = 0;
    std::string target = ".", from, against;
    Clash clash = FAIL;

    bool Has(Option option) const { return (options & option) != 0; }
    bool IsQuiet() const { return Has(QUIET); }
};

/// The name that stands for the standard input or output instead of a file.
inline bool IsStream(const std::string& path)
{
    return path == "-";
}

/// What a command accepts: its options, and how many arguments after the archive (-1 for any number).
struct Shape {
    const char* command;
    unsigned options;
    int least, most;
};

/// Throws UsageError if the command line fits none of the shapes. With --help or --version the command is not checked.
Arguments ParseArguments(int argc, char** argv, const std::vector<Shape>& shapes);
