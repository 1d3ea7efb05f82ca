#pragma once

#include <string>

namespace zm {

// The text of a settings file: one line "name=value" per value. Bytes that would break this format are written as
// "%41", so that names and values may contain any byte but NUL. Names are compared ignoring the case of A to Z. Lines
// in any other format are kept unchanged.

/// Finds the value of a name. Returns false if there is none.
bool FindSetting(const std::string& text, const std::string& name, std::string& res);

/// Returns the text with the value replaced, or appended if the name is new.
std::string WithSetting(const std::string& text, const std::string& name, const std::string& value);

/// Returns the path of a key's file relative to the folder of all settings: in lower case and without characters that
/// file names must not contain. Names that are too long are split into folders.
std::string SettingsPath(const std::string& key);

}  // namespace zm
