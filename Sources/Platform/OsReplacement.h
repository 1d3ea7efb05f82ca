#pragma once

#include <string>

namespace zm {

/// A new file that is to take the place of an old one.
struct Replacement {
    std::string target;     ///< what is replaced; links are resolved
    std::string temporary;  ///< the new file, beside it
};

/// Makes an empty file beside that of the path, or beside where it would be, with its permissions and owner. False, and
/// nothing is made, where the place cannot be taken unnoticed or at all: by a file that is not a regular one, has
/// several names or may not be written, or where none can be made like it.
bool BeginReplacement(const char* path, Replacement& res);

/// `done`: brings the new file to the disk and puts it into the old one's place, in one step. Otherwise, and if that
/// fails, removes it. Whether the place was taken.
bool EndReplacement(const Replacement& replacement, bool done);

}  // namespace zm
