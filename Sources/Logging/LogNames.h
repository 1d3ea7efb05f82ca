#pragma once

#include "XArray.h"
#include "XString.h"

namespace zm {

// The names in the lines of the log, for the log and its listeners: neither needs the other for them.

/// The name of a ZmLog::Level, or an empty text for any other value.
const char* LevelName(int level);

/// The modules of the log.
class ModuleNames {
public:
    /// Those of the process. The log frees their memory when it is destroyed.
    static ModuleNames& Instance();

    /// Returns the module's id, from 1 on; -1 for a null or empty name, or if out of
    /// memory. Adds it if it is new.
    int Add(const char* name);
    /// The position of a module, which is the id minus 1; -1 for a null, empty or unknown name.
    int Find(const char* name) const;
    /// Null for an unknown id. Valid until the next module is added.
    const char* NameOf(int id) const;
    void Clear();

private:
    XArray<XString> m_Names;
};

}  // namespace zm
