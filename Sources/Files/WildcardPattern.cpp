#include "Files/WildcardPattern.h"

#include "Foundations/Characters.h"
#include "Platform/OsFiles.h"

#include <string.h>

namespace zm {

bool MatchesPattern(const char* name, const char* pattern)
{
    return MatchesPattern(name, pattern, kFileNamesIgnoreCase);
}

// When a character does not fit, the last '*' takes one more and all after it is tried again: earlier ones need not be,
// as they could only take what the last one can.
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
    // A name without an extension has an empty one: "*.*" is every name, and "readme.*" is "readme", too.
    return *pattern == 0 || strcmp(pattern, ".*") == 0;
}

}  // namespace zm
