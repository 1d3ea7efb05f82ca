#include "Platform/FeatureWord.h"
#include "Support/Paths.h"

namespace {

void Take(const Path& path)
{
    ChooseVectorPath(path.sse);
    zm::g_HasAvx2 = path.avx2;
}

std::vector<Path> PathsOfThisProcessor()
{
    std::vector<Path> paths = {{"scalar path", false, false}, {"SSE path", true, false}};
    if (zm::g_HasAvx2) {
        paths.push_back({"AVX2 path", true, true});
    }
    return paths;
}

}  // namespace

const std::vector<Path>& AllPaths()
{
    static const std::vector<Path> paths = PathsOfThisProcessor();
    return paths;
}

PathGuard::PathGuard(const Path& path) : m_Previous{"", OnVectorPath(), zm::g_HasAvx2}
{
    Take(path);
}

PathGuard::~PathGuard()
{
    Take(m_Previous);
}
