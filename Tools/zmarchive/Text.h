#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

/// What the tool ends with; the text says why.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// "17 B", "3.4 KB", "1.2 MB": units of 1024.
std::string SizeText(uint64_t bytes);

/// "1 entry", "12 entries".
std::string CountText(uint64_t count);

/// The text without what a terminal would obey: control characters as "\x1b".
std::string Printable(const std::string& text);

/// As the library stores names.
std::string LowerCase(std::string text);
