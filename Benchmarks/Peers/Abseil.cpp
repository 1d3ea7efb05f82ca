#include "../Stores.h"

#include <absl/container/flat_hash_map.h>

#include <string>

namespace bench {
namespace {

typedef MapTable<absl::flat_hash_map<std::string, int>> Table;

constexpr Entry kEntries[] = {
    {"Table/Insert", InsertAll<Table>},
    {"Table/Find", FindAll<Table>},
    {"Table/Iterate", VisitAll<Table>},
};

}  // namespace

extern const Contender kAbseil;
constexpr Contender kAbseil{"Abseil", Role::PEER, kEntries};

}  // namespace bench
