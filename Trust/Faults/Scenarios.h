#pragma once

#include <vector>

/// One use of the library in an empty folder, which is the working directory.
struct Scenario {
    const char* name;
    void (*prepare)();              ///< before the faults
    int (*run)();                   ///< under the faults; returns what the library answered
    const char* (*check)(int res);  ///< after the faults; what is wrong, or null
};

extern const std::vector<Scenario> kArchiveScenarios, kConfigurationScenarios, kFileScenarios, kLogScenarios,
    kMemoryScenarios, kSystemScenarios;

inline std::vector<Scenario> AllScenarios()
{
    std::vector<Scenario> res;
    for (const auto* family : {&kArchiveScenarios, &kFileScenarios, &kConfigurationScenarios, &kLogScenarios,
                               &kMemoryScenarios, &kSystemScenarios}) {
        res.insert(res.end(), family->begin(), family->end());
    }
    return res;
}
