#pragma once

namespace zm {

// The user's settings: nested keys with named text values. Texts are never null.

/// Opens a key below `parent`, or below the user's root for null, and creates it if it is missing. '\' separates
/// levels. `rights` are those of the Windows registry. Returns null if the key cannot be opened.
void* OpenSettings(void* parent, const char* path, unsigned rights);
/// Null does nothing.
void CloseSettings(void* key);

/// Creates or replaces a value durably. Returns false, with the old value unchanged, if that fails.
bool WriteSetting(void* key, const char* name, const char* value);

/// Copies the stored bytes of a value, including a stored terminator, and returns their number. Returns -1 if there is
/// no value of that name, if it has more than `size` bytes, or if it is a text of exactly `size` bytes without a
/// terminator.
int ReadSetting(void* key, const char* name, char* value, int size);

}  // namespace zm
