#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

/// Ends the tool with an error; the text says why.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A size with its unit, in steps of 1024: "17 B", "3.4 KB", "1.2 MB".
std::string SizeText(uint64_t bytes);

/// "1 entry", "12 entries".
std::string CountText(uint64_t count);

/// The text with control characters, which a terminal would execute, replaced by escapes such as "\x1b".
std::string Printable(const std::string& text);

/// The text as a JSON string. A byte that is not part of UTF-8 becomes a lone surrogate, from "\udc80" on, from which
/// some readers make the byte again.
std::string JsonText(const std::string& text);

/// Lower case as the library applies it to stored names.
std::string LowerCase(std::string text);
