#pragma once

#include "Support/SilentLog.h"
#include "Support/TemporaryFolder.h"

/// A folder for the files of a target. Silences the log: warnings about damaged files would fill the disk.
class ScratchFolder : public TemporaryFolder {
public:
    ScratchFolder() : TemporaryFolder(IN_MEMORY) { SilenceLog(); }
};
