#pragma once

namespace zm {

// The user's store of texts: keys in one another, with named values. Texts are never null.

/// A key below another, or below the user's own for null, made if it is missing. '\' separates levels. `rights` are
/// those of the Windows registry. Null if it cannot be opened.
void* OpenSettings(void* parent, const char* path, unsigned rights);
/// Null does nothing.
void CloseSettings(void* key);

/// Makes or replaces a value, for good when it returns. False, with the old value in place, if that fails.
bool WriteSetting(void* key, const char* name, const char* value);

/// The bytes of a value as they are stored, with their terminator if they have one. Their number; -1 if there is no
/// value of that name or it has more than `size` bytes, and for a text of so many that has no terminator.
int ReadSetting(void* key, const char* name, char* value, int size);

}  // namespace zm
