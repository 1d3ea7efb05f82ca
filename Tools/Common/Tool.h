#pragma once

#include <stdexcept>

/// An invalid command line; the text says why.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Runs a tool and returns its exit code: what `run` returns, 1 with a message after a failure or if the output could
/// not be written, 2 for an invalid command line.
int RunTool(const char* name, int (*run)(int argc, char** argv), int argc, char** argv);
