#pragma once

#include <string>

namespace zm {

// The text of a settings file: one line for each value, "name=value". Bytes that would disturb that stand as "%41", so
// any byte but NUL is possible. Names are compared without regard to the case of A to Z. Lines that are none of
// these stay as they are.

/// The value of that name; false if there is none.
bool FindSetting(const std::string& text, const std::string& name, std::string& res);

/// The text with that value in the place of the old one, or behind all others.
std::string WithSetting(const std::string& text, const std::string& name, const std::string& value);

/// The path of a key's file below the folder of all: lower case, and free of what a name of a file may not hold. Parts
/// that are too long for one name become folders.
std::string SettingsPath(const std::string& key);

}  // namespace zm
