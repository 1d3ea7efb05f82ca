// Configurations with 10,000 sections per 130,000 entries, in temporary files.

#include "Families.h"
#include "TestFiles.h"

#include "ZmConfiguration.h"

#include <map>
#include <memory>

namespace bench {
namespace {

void PrepareNothing(Work&) {}

// Two peers, each with its own goal.
constexpr Task kTasks[] = {
    {"Configuration/Load", 4, 0, PrepareNothing, {26000, 130000, 1300000}, {0.60, 0.60, 0.60}, 0},
    {"Configuration/LoadFlat", 4, 0, PrepareNothing, {130000}, {0.50}, 0},
    {"Configuration/Save", 4, 0, PrepareNothing, {130000}, {0.25}, 0},
};

int Fill(ZmConfiguration& tree, int entries)
{
    int line;
    XString error;
    return tree.BuildFromFile(ConfigurationFile(entries).c_str(), line, error);
}

void Load(const Work& w)
{
    ZmConfiguration tree(2);
    Fill(tree, w.count);
    *static_cast<float*>(w.dst) = float(tree.GetNumberOfEntriesRecursive());
}

void Save(const Work& w)
{
    static std::map<int, std::unique_ptr<ZmConfiguration>> filled;
    std::unique_ptr<ZmConfiguration>& tree = filled[w.count];
    if (tree == nullptr) {
        tree = std::make_unique<ZmConfiguration>(uint16_t(2));
        Fill(*tree, w.count);
    }
    *static_cast<float*>(w.dst) = float(tree->SaveToFile((TestFolder() + "/saved.cfg").c_str()));
}

constexpr Entry kEntries[] = {
    {"Configuration/Load", Load},
    {"Configuration/LoadFlat", Load},
    {"Configuration/Save", Save},
};

}  // namespace

constexpr Tasks kConfigurationTasks{kTasks};
constexpr Contender kConfiguration{"ZmMath", Role::OURS, kEntries};

}  // namespace bench
