#pragma once

#include "ZmSystem.h"

#include <string>

namespace zm {

extern const ZM_PLATFORM kPlatform;

struct SystemVersion {
    unsigned part[3] = {};
    std::string name;  ///< for display; empty if the system has none
};

SystemVersion ReadSystemVersion();

}  // namespace zm
