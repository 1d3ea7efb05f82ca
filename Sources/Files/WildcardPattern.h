#pragma once

namespace zm {

/// Whether a file name matches a pattern: '*' matches any characters, '?' exactly one, and a ".*" at the end also
/// matches no extension. The letters A to Z match case as the platform's file names do.
bool MatchesPattern(const char* name, const char* pattern);

/// The same, with case sensitivity chosen by the caller.
bool MatchesPattern(const char* name, const char* pattern, bool ignoreCase);

}  // namespace zm
