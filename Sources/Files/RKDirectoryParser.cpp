#include "RKDirectoryParser.h"

#include "Files/WildcardPattern.h"
#include "Platform/OsFiles.h"
#include "Platform/OutOfMemory.h"

#include <string>
#include <vector>

/// The state of a walk: the folders from the first one down to the one being read, each with its pending subfolders.
struct RKDirectoryParser::Walk {
    struct Subfolder {
        std::string name;
        bool isLink;
    };
    struct Level {
        std::string directory;
        bool listsFolders;
        bool isRead = false;
        std::vector<Subfolder> subfolders = {};
        size_t nextSubfolder = 0;
    };

    zm::DirectorySearch search;  ///< reads the last level until that level's isRead is set
    bool recursive = false;
    std::vector<Level> levels;
    std::string result;

    void Begin(const char* directory, bool intoSubfolders, bool listsFolders)
    {
        recursive = intoSubfolders;
        levels.clear();
        Enter(directory, listsFolders);
    }

    void Enter(const std::string& directory, bool listsFolders)
    {
        search.Open(directory.c_str());
        levels.push_back({directory, listsFolders});
    }

    bool NextOfFolder(const char* pattern);
    bool NextOfSubfolders();
};

// Continues in the current folder up to the next result and collects its subfolders on the way.
bool RKDirectoryParser::Walk::NextOfFolder(const char* pattern)
{
    Level& level = levels.back();
    while (!level.isRead && search.Next()) {
        if (search.IsDirectory() && recursive) {
            level.subfolders.push_back({search.Name(), search.IsLink()});
        } else if ((!search.IsDirectory() || level.listsFolders) &&
                   zm::MatchesPattern(search.Name().c_str(), pattern)) {
            result = level.directory + '\\' + search.Name();
            return true;
        }
    }
    level.isRead = true;
    return false;
}

// Enters the next subfolder of the current folder, or leaves the folder if none is left. Returns whether that subfolder
// is itself a result.
bool RKDirectoryParser::Walk::NextOfSubfolders()
{
    Level& level = levels.back();
    if (level.nextSubfolder == level.subfolders.size()) {
        levels.pop_back();
        return false;
    }
    const bool isFirst = level.nextSubfolder == 0, isResult = level.listsFolders;
    const Subfolder& subfolder = level.subfolders[level.nextSubfolder++];
    result = level.directory + '\\' + subfolder.name;
    if (!subfolder.isLink) {
        // Folders below the first subfolder are not listed. Callers depend on this result, so keep it
        // (RKDirectoryParserTest, RecursiveWalksFindWhatTheStandardLibraryFinds).
        Enter(result, isResult && !isFirst);
    }
    return isResult;
}

RKDirectoryParser::RKDirectoryParser(const char* dir, const char* pattern, int recursive, int listDirectories)
    : m_Walk(new (std::nothrow) Walk)
{
    Reset(dir, pattern, recursive, listDirectories);
}

RKDirectoryParser::~RKDirectoryParser()
{
    delete m_Walk;
}

void RKDirectoryParser::Reset(const char* dir, const char* pattern, int recursive, int listDirectories)
{
    if (dir != nullptr) {
        m_Directory = dir;
    }
    if (pattern != nullptr) {
        m_Pattern = pattern;
    }
    zm::UnlessOutOfMemory(0, [&] {
        if (m_Walk != nullptr) {
            m_Walk->Begin(m_Directory.Text(), recursive != 0, listDirectories != 0);
        }
        return 1;
    });
}

const char* RKDirectoryParser::GetNextFile()
{
    const char* res = zm::UnlessOutOfMemory<const char*>(nullptr, [&]() -> const char* {
        while (m_Walk != nullptr && !m_Walk->levels.empty()) {
            if (m_Walk->NextOfFolder(m_Pattern.Text()) || m_Walk->NextOfSubfolders()) {
                return m_Walk->result.c_str();
            }
        }
        return nullptr;
    });
    if (res == nullptr && m_Walk != nullptr) {
        m_Walk->levels.clear();
    }
    return res;
}
