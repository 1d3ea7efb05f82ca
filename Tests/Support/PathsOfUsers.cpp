#include "Support/Paths.h"

const std::vector<Path>& AllPaths()
{
    static const std::vector<Path> paths = {{"scalar path", false, false}, {"vector path", true, true}};
    return paths;
}

PathGuard::PathGuard(const Path& path) : m_Previous{"", OnVectorPath(), true}
{
    ChooseVectorPath(path.sse);
}

PathGuard::~PathGuard()
{
    ChooseVectorPath(m_Previous.sse);
}
