#include "../Harness.h"
#include "../TestFiles.h"

#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include <map>
#include <memory>

namespace bench {
namespace {

void Load(const Work& w)
{
    CSimpleIniA file;
    file.LoadFile(IniFile(w.count).c_str());
    CSimpleIniA::TNamesDepend sections;
    file.GetAllSections(sections);
    int count = 0;
    for (const auto& section : sections) {
        count += int(file.GetSectionSize(section.pItem));
    }
    *static_cast<float*>(w.dst) = float(count);
}

void Save(const Work& w)
{
    static std::map<int, std::unique_ptr<CSimpleIniA>> filled;
    std::unique_ptr<CSimpleIniA>& file = filled[w.count];
    if (file == nullptr) {
        file = std::make_unique<CSimpleIniA>();
        file->LoadFile(IniFile(w.count).c_str());
    }
    *static_cast<float*>(w.dst) = float(file->SaveFile((TestFolder() + "/saved.ini").c_str()) == SI_OK);
}

constexpr Entry kEntries[] = {
    {"Configuration/LoadFlat", Load},
    {"Configuration/Save", Save},
};

}  // namespace

extern const Contender kSimpleIni;
constexpr Contender kSimpleIni{"SimpleIni", Role::PEER, kEntries};

}  // namespace bench
