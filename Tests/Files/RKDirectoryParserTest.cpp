#include "RKDirectoryParser.h"

#include "Support/Random.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Paths = std::vector<std::string>;

Paths Results(RKDirectoryParser& parser)
{
    Paths paths;
    while (const char* path = parser.GetNextFile()) {
        paths.push_back(path);
        if (paths.size() > 10000) {
            ADD_FAILURE() << "the walk does not end";
            break;
        }
    }
    EXPECT_EQ(parser.GetNextFile(), nullptr) << "after its end";
    return paths;
}

Paths Walk(const std::string& dir, const char* pattern, bool recursive, bool lists)
{
    RKDirectoryParser parser(dir.c_str(), pattern, recursive, lists);
    return Results(parser);
}

/// The expected order of a walk, computed with the standard library: the files of each folder, then its subfolders one
/// by one. Folders below the first subfolder are not listed.
void ExpectWalk(Paths& paths, const fs::path& place, const std::string& joined, const std::string& end, bool lists)
{
    Paths folders;
    for (const fs::directory_entry& entry : fs::directory_iterator(place)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_directory()) {
            folders.push_back(name);
        } else if (name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0) {
            paths.push_back(joined + '\\' + name);
        }
    }
    bool first = true;
    for (const std::string& name : folders) {
        if (lists) {
            paths.push_back(joined + '\\' + name);
        }
        ExpectWalk(paths, place / name, joined + '\\' + name, end, lists && !first);
        first = false;
    }
}

void GrowTree(Random& random, const std::string& folder, int depth)
{
    for (int i = random.Int(0, 5); i > 0; --i) {
        MakeFile(folder + "/f" + std::to_string(i) + (random.Int(0, 1) != 0 ? ".txt" : ""));
    }
    for (int i = depth > 0 ? random.Int(0, 4) : 0; i > 0; --i) {
        const std::string sub = folder + "/d" + std::to_string(i) + (random.Int(0, 2) != 0 ? "" : ".txt");
        fs::create_directory(sub);
        GrowTree(random, sub, depth - 1);
    }
}

TEST(RKDirectoryParserTest, RecursiveWalksFindWhatTheStandardLibraryFinds)
{
    for (const uint64_t seed : {1u, 2u, 3u}) {
        const TemporaryFolder folder;
        Random random(seed);
        GrowTree(random, folder.Path(), 5);
        for (const char* end : {"", ".txt"}) {
            for (const bool lists : {false, true}) {
                SCOPED_TRACE(std::string("*") + end + (lists ? ", with folders" : ""));
                Paths expected;
                ExpectWalk(expected, folder.Path(), folder.Path(), end, lists);
                EXPECT_EQ(Walk(folder.Path(), (std::string("*") + end).c_str(), true, lists), expected);
            }
        }
    }
}

std::set<std::string> NamesOf(const Paths& paths)
{
    std::set<std::string> names;
    for (const std::string& path : paths) {
        EXPECT_TRUE(names.insert(path.substr(path.rfind('\\') + 1)).second) << path << " twice";
    }
    return names;
}

TEST(RKDirectoryParserTest, AWalkThroughOneFolderTakesWhatMatches)
{
    const TemporaryFolder folder;
    for (const char* name : {"a.txt", "b.txt", "a.b.txt", ".dot", "noext", "..odd"}) {
        MakeFile(folder / name);
    }
    for (const char* name : {"sub", "sub.txt"}) {
        fs::create_directory(folder / name);
        MakeFile(folder / name + "/inside.txt");
    }
    const struct {
        const char* pattern;
        bool lists;
        std::set<std::string> names;
    } kRows[] = {
        {"*", false, {"a.txt", "b.txt", "a.b.txt", ".dot", "noext", "..odd"}},
        {"*.*", false, {"a.txt", "b.txt", "a.b.txt", ".dot", "noext", "..odd"}},
        {"*", true, {"a.txt", "b.txt", "a.b.txt", ".dot", "noext", "..odd", "sub", "sub.txt"}},
        {"*.txt", false, {"a.txt", "b.txt", "a.b.txt"}},
        {"*.txt", true, {"a.txt", "b.txt", "a.b.txt", "sub.txt"}},
        {"?.txt", false, {"a.txt", "b.txt"}},
        {"a.txt", false, {"a.txt"}},
        {"noext.*", false, {"noext"}},
        {"sub.*", true, {"sub", "sub.txt"}},
        {"none", true, {}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.pattern);
        EXPECT_EQ(NamesOf(Walk(folder.Path(), row.pattern, false, row.lists)), row.names);
    }
    EXPECT_EQ(Walk(WithBackslashes(folder.Path()), "noext", false, false),
              Paths{WithBackslashes(folder.Path()) + "\\noext"});
    EXPECT_EQ(NamesOf(Walk(folder / "sub.txt", "*", true, true)), std::set<std::string>{"inside.txt"});
}

TEST(RKDirectoryParserTest, FoldersWithNothingInThemGiveNothing)
{
    const TemporaryFolder folder;
    MakeFile(folder / "file");
    fs::create_directory(folder / "empty");
    for (const char* name : {"empty", "missing", "file"}) {
        EXPECT_EQ(Walk(folder / name, "*", true, true), Paths()) << name;
    }
}

TEST(RKDirectoryParserTest, NoFolderIsTheRoot)
{
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator("/")) {
        names.insert(entry.path().filename().string());
    }
    EXPECT_EQ(NamesOf(Walk("", "*", false, true)), names);
}

TEST(RKDirectoryParserTest, DeepAndWideTreesAreWalkedWhole)
{
    const TemporaryFolder folder;
    std::string deep = folder.Path();
    for (int i = 0; i < 60; ++i) {
        deep += "/d";
        fs::create_directory(deep);
    }
    MakeFile(deep + "/f");
    EXPECT_EQ(Walk(folder.Path(), "f", true, false),
              Paths{folder.Path() + WithBackslashes(deep.substr(folder.Path().size())) + "\\f"});
    std::set<std::string> names;
    for (int i = 0; i < 1500; ++i) {
        MakeFile(folder / *names.insert("w" + std::to_string(i)).first);
    }
    EXPECT_EQ(NamesOf(Walk(folder.Path(), "w*", true, false)), names);
}

TEST(RKDirectoryParserTest, ResetBeginsAnewAndKeepsWhatIsNull)
{
    const TemporaryFolder folder;
    fs::create_directories(folder / "one/sub");
    fs::create_directory(folder / "two");
    for (const char* name : {"one/a", "one/b", "one/sub/a", "two/a"}) {
        MakeFile(folder / name);
    }
    RKDirectoryParser parser((folder / "one").c_str(), "a", 1, 1);
    EXPECT_EQ(Results(parser), (Paths{folder / "one\\a", folder / "one\\sub", folder / "one\\sub\\a"}));
    parser.Reset(nullptr, nullptr, 0, 0);
    EXPECT_EQ(Results(parser), Paths{folder / "one\\a"});
    parser.Reset((folder / "two").c_str(), nullptr, 1, 0);
    EXPECT_EQ(parser.GetNextFile(), folder / "two\\a");
    parser.Reset((folder / "one").c_str(), "b", 1, 0);
    EXPECT_EQ(Results(parser), Paths{folder / "one\\b"});
}

}  // namespace
