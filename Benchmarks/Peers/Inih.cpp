#include "../Harness.h"
#include "../TestFiles.h"

#include <ini.h>

#include <memory>
#include <unordered_map>

namespace bench {
namespace {

/// The same tree, built of the standard library's hash maps.
struct Section {
    std::unordered_map<std::string, std::string> entries;
    std::unordered_map<std::string, std::unique_ptr<Section>> sections;
};

struct Loading {
    Section root;
    std::string path;  ///< of the current section, to avoid a search for each of its entries
    Section* section = &root;
    int count = 0;
};

Section* Find(Section* section, const std::string& path)
{
    for (size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
        end = path.find('.', begin);
        std::unique_ptr<Section>& child = section->sections[path.substr(begin, end - begin)];
        if (child == nullptr) {
            child = std::make_unique<Section>();
        }
        section = child.get();
    }
    return section;
}

int Add(void* user, const char* section, const char* name, const char* value)
{
    Loading& loading = *static_cast<Loading*>(user);
    if (loading.path != section) {
        loading.path = section;
        loading.section = Find(&loading.root, loading.path);
    }
    loading.count += loading.section->entries.emplace(name, value).second;
    return 1;
}

void Load(const Work& w)
{
    Loading loading;
    ini_parse(IniFile(w.count).c_str(), Add, &loading);
    *static_cast<float*>(w.dst) = float(loading.count);
}

constexpr Entry kEntries[] = {
    {"Configuration/Load", Load},
};

}  // namespace

extern const Contender kInih;
constexpr Contender kInih{"inih with hash maps", Role::PEER, kEntries};

}  // namespace bench
