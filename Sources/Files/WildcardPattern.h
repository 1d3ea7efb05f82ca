#pragma once

namespace zm {

/// Whether a file name matches a pattern: '*' stands for any characters, '?' for one, ".*" at the end for no
/// extension, too. The case of A to Z counts as it does in the platform's file names.
bool MatchesPattern(const char* name, const char* pattern);

/// The same with the case given.
bool MatchesPattern(const char* name, const char* pattern, bool ignoreCase);

}  // namespace zm
