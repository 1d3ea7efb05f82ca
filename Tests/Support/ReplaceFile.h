#pragma once

#include "Platform/Replacement.h"
#include "Support/TemporaryFolder.h"

/// Replaces the file by one with these bytes; whether that succeeded.
inline bool Replace(const std::string& path, const std::string& bytes,
                    zm::Replacement::Options options = zm::Replacement::EXACT)
{
    zm::Replacement replacement;
    if (!replacement.Begin(path.c_str(), options)) {
        return false;
    }
    MakeFile(replacement.Path(), bytes);
    return replacement.Commit();
}
