#include "Files/WildcardPattern.h"

#include "Platform/Characters.h"
#include "Platform/OsFiles.h"

#include <string.h>

namespace zm {

bool MatchesPattern(const char* name, const char* pattern)
{
    return MatchesPattern(name, pattern, kFileNamesIgnoreCase);
}

// On a mismatch the last '*' takes one more character and matching resumes after it. Earlier stars need no retry: the
// last one can take whatever they could.
bool MatchesPattern(const char* name, const char* pattern, bool ignoreCase)
{
    const char *afterStar = nullptr, *taken = nullptr;
    while (*name != 0) {
        const bool same = *pattern == *name || (ignoreCase && ToLower(*pattern) == ToLower(*name));
        if (*pattern == '*') {
            afterStar = ++pattern;
            taken = name;
        } else if (*pattern != 0 && (*pattern == '?' || same)) {
            ++pattern;
            ++name;
        } else if (afterStar != nullptr) {
            pattern = afterStar;
            name = ++taken;
        } else {
            return false;
        }
    }
    while (*pattern == '*') {
        ++pattern;
    }
    // A name without an extension has an empty one: "*.*" matches every name, and "readme.*" matches "readme".
    return *pattern == 0 || strcmp(pattern, ".*") == 0;
}

}  // namespace zm
