#include "Platform/OsSystem.h"

#include <fstream>
#include <stdio.h>
#include <sys/utsname.h>

namespace zm {

const ZM_PLATFORM kPlatform = ZM_PLATFORM_LINUX;

namespace {

/// The name of the distribution, read from a file of NAME="value" lines; empty if there is no such file.
std::string DistributionName()
{
    const std::string key = "PRETTY_NAME=";
    std::ifstream file("/etc/os-release");
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, key.size(), key) == 0) {
            const std::string value = line.substr(key.size());
            const bool isQuoted = value.size() >= 2 && value.front() == value.back() && value.front() == '"';
            return isQuoted ? value.substr(1, value.size() - 2) : value;
        }
    }
    return std::string();
}

}  // namespace

SystemVersion ReadSystemVersion()
{
    SystemVersion version;
    version.name = DistributionName();
    utsname kernel;
    if (uname(&kernel) == 0) {
        sscanf(kernel.release, "%u.%u.%u", &version.part[0], &version.part[1], &version.part[2]);
        if (version.name.empty()) {
            version.name = std::string(kernel.sysname) + ' ' + kernel.release;
        }
    }
    return version;
}

}  // namespace zm
