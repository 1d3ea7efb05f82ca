#include "ZmBigFile.h"

#include "ArchiveBytes.h"
#include "Support/Blocks.h"
#include "Support/HeardMessages.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::string ReadSub(ZmSubFile& sub)
{
    std::string bytes(sub.Size(), '?');
    EXPECT_EQ(sub.Read(bytes.data(), sub.Size()), sub.Size());
    return bytes;
}

/// The text of a file, with CR LF converted to LF.
std::string TextOf(const std::string& path)
{
    std::string text = BytesOf(path);
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

class ZmBigFileTest : public testing::Test {
protected:
    ZmBigFileTest() { m_Messages.Listen("archive", ZmLog::GetLog().RegisterModule("ZmMath")); }

    std::string Bytes(int largest)
    {
        const Block block = RandomBytes(m_Random, size_t(m_Random.Int(0, largest)));
        return {block.begin(), block.end()};
    }
    int AppendBytes(const std::string& name, const std::string& bytes)
    {
        return m_Archive.Append(name.c_str(), bytes.data(), unsigned(bytes.size()));
    }
    void Open(int keepOrder = 1) { ASSERT_EQ(m_Archive.Open(m_Path.c_str(), keepOrder), 1); }
    void Make(const Members& members)
    {
        MakeFile(m_Path, ArchiveBytes(members));
        Open();
    }
    Members Saved() const { return MembersOf(BytesOf(m_Path)); }

    const TemporaryFolder m_Folder;
    const std::string m_Path = m_Folder / "archive.zmbg";
    HeardMessages m_Messages;
    Random m_Random{1};
    ZmBigFile m_Archive;
};

/// Applies the same operations to an archive and to a list of members.
class ZmBigFileModelTest : public ZmBigFileTest {
protected:
    Members::iterator Any() { return m_Model.begin() + m_Random.Int(0, int(m_Model.size()) - 1); }

    void Change(int step)
    {
        const std::string name = "Dir/Name" + std::to_string(step) + ".Ext", bytes = Bytes(100000);
        const std::string stored = "dir/name" + std::to_string(step) + ".ext", disk = m_Folder / std::to_string(step);
        MakeFile(disk, bytes);
        const int change = m_Random.Int(0, 5), deferred = m_Random.Int(0, 1);
        if (change == 0 && !m_Model.empty()) {
            const auto removed = Any();
            EXPECT_EQ(m_Archive.Remove(removed->first.c_str()), 1);
            m_Model.erase(removed);
        } else if (change == 1 && !m_Model.empty()) {
            const auto replaced = Any();
            EXPECT_EQ(m_Archive.Append(replaced->first.c_str(), disk.c_str(), deferred, 0), 0);
            EXPECT_EQ(m_Archive.Append(replaced->first.c_str(), disk.c_str(), deferred, 1), 1);
            replaced->second = bytes;
        } else if (change == 2 && !m_Model.empty()) {
            const auto first = Any();
            MakeFile(m_Folder / "list", first->first + "\r\nnone\n");
            EXPECT_EQ(m_Archive.LoadIndex((m_Folder / "list").c_str()), 1);
            std::rotate(m_Model.begin(), first, first + 1);
        } else if (change == 3) {
            EXPECT_EQ(AppendBytes(name, bytes), 1);
            m_Model.emplace_back(stored, bytes);
        } else {
            EXPECT_EQ(m_Archive.Append(name.c_str(), disk.c_str(), deferred, 0), 1);
            m_Model.emplace_back(stored, bytes);
        }
    }

    void ExpectToRead()
    {
        ASSERT_EQ(m_Archive.GetEntryCount(), int(m_Model.size()));
        for (size_t i = m_Model.size(); i-- > 0;) {
            ZmSubFile sub;
            ASSERT_EQ(m_Archive.GetEntryFile(int(i), &sub), 1);
            EXPECT_EQ(m_Archive.GetEntryName(int(i)), m_Model[i].first);
            EXPECT_EQ(m_Archive.GetEntrySize(int(i)), m_Model[i].second.size());
            EXPECT_EQ(sub.IsValid(), !m_Model[i].second.empty());
            EXPECT_EQ(ReadSub(sub), m_Model[i].second);
        }
    }

    Members m_Model;
};

TEST_F(ZmBigFileModelTest, SavesWhatWasAppendedRemovedReplacedAndReordered)
{
    Open();
    for (int step = 0; step < 300 && !HasFailure(); ++step) {
        Change(step);
        if (step % 7 == 0) {
            const std::string other = m_Folder / "other";
            ASSERT_EQ(m_Archive.Save(other.c_str(), nullptr), 1);
            EXPECT_EQ(MembersOf(BytesOf(other)), m_Model);
        }
        if (step % 20 == 0) {
            ASSERT_EQ(m_Archive.Save(nullptr, nullptr), 1);
            EXPECT_EQ(Saved(), m_Model);
            Open();
            ExpectToRead();
        }
    }
    for (const std::string& name : m_Folder.Files()) {
        EXPECT_EQ(name.find(".tmp"), std::string::npos) << name;
    }
}

TEST_F(ZmBigFileTest, FindsNamesWithoutTheirDirectoryInAnyCase)
{
    Make({{"tex.bmp", "top"}, {"dir/tex.bmp", "inside"}, {"b", "1"}, {"b", ""}, {"b", "later"}});
    ZmSubFile sub;
    for (const char* name : {"tex.bmp", "TEX.bmp", "c:\\dir/Tex.BMP"}) {
        SCOPED_TRACE(name);
        ASSERT_EQ(m_Archive.Find(name, &sub), 1);
        EXPECT_EQ(ReadSub(sub), "top");
    }
    ASSERT_EQ(m_Archive.Find("b", &sub), 1);
    EXPECT_EQ(ReadSub(sub), "later") << "the later of two entries with one name";
    EXPECT_EQ(m_Archive.Find("tex", nullptr), 0);
    EXPECT_EQ(m_Archive.Remove("DIR/TEX.BMP"), 1);
    EXPECT_EQ(m_Archive.Remove("dir/tex.bmp"), 0);
    EXPECT_EQ(m_Archive.RemoveEntry(1), 1);
    EXPECT_EQ(m_Archive.Find("b", nullptr), 1) << "only an earlier one is gone";
    EXPECT_EQ(m_Archive.RemoveEntry(2), 1);
    EXPECT_EQ(m_Archive.RemoveEntry(2), 0);
    EXPECT_EQ(m_Archive.Find("b", nullptr), 0);
    EXPECT_EQ(m_Archive.Find(nullptr, nullptr), 0);
    EXPECT_EQ(m_Archive.RemoveEntry(1), 1) << "one that no name finds";
    EXPECT_EQ(m_Archive.GetEntryCount(), 1);
}

TEST_F(ZmBigFileTest, WhatNoEntryCanBeIsRefused)
{
    Make({{"a", "1"}});
    const std::string longName(65535, 'n');
    EXPECT_EQ(AppendBytes(longName, "bytes"), 0);
    EXPECT_EQ(m_Archive.Append(longName.c_str(), m_Path.c_str(), 0, 1), 0);
    EXPECT_EQ(m_Archive.Remove(longName.c_str()), 0);
    EXPECT_EQ(m_Archive.Append("b", nullptr, 1), 0);
    EXPECT_EQ(m_Archive.Append("b", m_Path.c_str(), 0x80000000u), 0) << "more than an archive can hold";
    for (const int position : {-1, 1}) {
        EXPECT_EQ(m_Archive.GetEntryName(position), nullptr);
        EXPECT_EQ(m_Archive.GetEntrySize(position), 0u);
        EXPECT_EQ(m_Archive.GetEntryFile(position, nullptr) + m_Archive.RemoveEntry(position), 0);
    }
    EXPECT_EQ(m_Archive.GetEntryFile(0, nullptr), 1);
    EXPECT_EQ(m_Archive.Append("b", nullptr, 0), 1) << "an empty one";
    EXPECT_EQ(m_Archive.GetEntryFile(1, nullptr), 0) << "not saved yet";
}

TEST_F(ZmBigFileTest, FindsWhatThePathSplitterLeaves)
{
    constexpr char kLetters[] = "aZ[@./\\:\xC4";
    for (int i = 0; i < 2000 && !HasFailure(); ++i) {
        std::string path(size_t(m_Random.Int(0, i % 20 == 0 ? 600 : 40)), 'n');
        for (char& c : path) {
            c = m_Random.Int(0, 9) == 0 ? kLetters[m_Random.Int(0, 8)] : c;
        }
        SCOPED_TRACE(path);
        const RKPathSplitter parts(path.c_str());
        const std::string key = std::string(parts.GetName()) + parts.GetExtension();
        ASSERT_EQ(AppendBytes(key, ""), 1);
        EXPECT_EQ(m_Archive.Find(path.c_str(), nullptr), 1);
        ASSERT_EQ(m_Archive.Remove(key.c_str()), 1);
        EXPECT_EQ(m_Archive.Find(path.c_str(), nullptr), 0);
    }
}

TEST_F(ZmBigFileTest, AFileThatIsMissingLeavesAnEmptyEntryOrZeros)
{
    const std::string disk = m_Folder / "disk", grown = m_Folder / "grown", below = m_Folder / "below";
    MakeFile(disk, "four");
    EXPECT_EQ(m_Archive.Save(nullptr, nullptr), 0) << "no name yet";
    EXPECT_EQ(m_Archive.Append("None", (m_Folder / "none").c_str(), 1, 0), 0);
    EXPECT_EQ(m_Archive.Append("Folder", m_Folder.Path().c_str(), 0, 0), 0);
    EXPECT_EQ(m_Archive.Append("Disk", disk.c_str(), 1, 0), 1);
    EXPECT_EQ(m_Archive.GetEntrySize(2), 4u);
    EXPECT_EQ(m_Archive.GetEntryFile(2, nullptr), 0) << "not in the file yet";
    MakeFile(grown, "four");
    EXPECT_EQ(m_Archive.Append("Grown", grown.c_str(), 1, 0), 1);
    MakeFile(grown, "longer");
    std::filesystem::create_directory(below);
    MakeFile(below + "/file", "four");
    EXPECT_EQ(m_Archive.Append("Below", (below + "/file").c_str(), 1, 0), 1);
    std::filesystem::remove_all(below);
    MakeFile(below, "a file, no folder");
    std::filesystem::remove(disk);
    ASSERT_EQ(m_Archive.Save(m_Path.c_str(), nullptr), 1);
    const std::string zeros(4, '\0');
    EXPECT_EQ(Saved(), (Members{{"none", ""}, {"folder", ""}, {"disk", zeros}, {"grown", zeros}, {"below", zeros}}));
    const std::vector<HeardMessage> heard = m_Messages.Take();
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_EQ(heard[0].line, 337);
    EXPECT_EQ(heard[0].text, "File " + disk + " is missing for the big file saving");
}

struct Percentages : ZmBigFile::ProgressionCallback {
    void Progress(int percent) override { heard.push_back(percent); }
    std::vector<int> heard;
};

TEST_F(ZmBigFileTest, ProgressTellsEachPercentageOnce)
{
    Percentages few, many;
    for (int i = 0; i < 200; ++i) {
        AppendBytes(std::to_string(i), "x");
        if (i == 2) {
            EXPECT_EQ(m_Archive.Save(m_Path.c_str(), &few), 1);
        }
    }
    EXPECT_EQ(m_Archive.Save(m_Path.c_str(), &many), 1);
    EXPECT_EQ(few.heard, (std::vector<int>{33, 66, 100}));
    ASSERT_EQ(many.heard.size(), 101u);
    EXPECT_TRUE(many.heard.front() == 0 && many.heard.back() == 100);
    EXPECT_TRUE(std::is_sorted(many.heard.begin(), many.heard.end()));
}

// The object goes on reading the file that it has opened, which has no name any more.
TEST_F(ZmBigFileTest, SavingToTheOpenArchivesPathLeavesTheObjectAsItIs)
{
    const Members members = {{"a", "one"}, {"b", Bytes(100000)}};
    Make(members);
    ASSERT_EQ(m_Archive.Remove("a"), 1);
    AppendBytes("c", "new");
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(m_Archive.Save(m_Path.c_str(), nullptr), 1) << round;
        EXPECT_EQ(Saved(), (Members{members[1], {"c", "new"}}));
        ZmSubFile sub;
        ASSERT_EQ(m_Archive.Find("b", &sub), 1);
        EXPECT_EQ(ReadSub(sub), members[1].second);
    }
    ASSERT_EQ(m_Archive.Save(nullptr, nullptr), 1);
    EXPECT_EQ(Saved(), (Members{members[1], {"c", "new"}}));
    EXPECT_EQ(m_Folder.Files(), std::vector<std::string>{"archive.zmbg"});
}

TEST_F(ZmBigFileTest, WithoutItsOrderAnArchiveIsReadOnly)
{
    Make({{"a", "1"}, {"b", "22"}});
    Open(0);
    EXPECT_EQ(m_Archive.GetEntryCount(), 2);
    EXPECT_STREQ(m_Archive.GetEntryName(1), "b");
    testing::internal::CaptureStdout();
    EXPECT_EQ(m_Archive.Save((m_Folder / "other").c_str(), nullptr), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "diff : 0 <=> 2");
    EXPECT_EQ(BytesOf(m_Folder / "other"), ArchiveBytes({}));
}

TEST_F(ZmBigFileTest, OnlyOpenMakesAFile)
{
    EXPECT_EQ(m_Archive.OpenExisting(m_Path.c_str()), 0);
    EXPECT_FALSE(std::filesystem::exists(m_Path));
    EXPECT_EQ(m_Archive.Save(nullptr, nullptr), 0) << "the name is not kept";
    Make({{"a", "1"}, {"b", "22"}});
    EXPECT_EQ(m_Archive.OpenExisting(m_Path.c_str()), 1);
    EXPECT_EQ(m_Archive.Remove("a") + m_Archive.Save(nullptr, nullptr), 2);
    EXPECT_EQ(Saved(), (Members{{"b", "22"}})) << "with its order";
    EXPECT_EQ(m_Archive.OpenExisting(m_Path.c_str(), 0) + m_Archive.Save(nullptr, nullptr), 2);
    EXPECT_EQ(Saved(), Members()) << "or without";
    MakeFile(m_Path, "no archive");
    EXPECT_EQ(m_Archive.OpenExisting(m_Path.c_str()) + m_Archive.OpenExisting(nullptr), 0);
    EXPECT_EQ(m_Archive.GetEntryCount(), 0);
}

TEST_F(ZmBigFileTest, IndexListsReorderAndLoseALastCharacter)
{
    const std::string list = m_Folder / "list";
    Make({{"first", "1"}, {"second", "22"}, {"third", "333"}});
    AppendBytes("new", "4444");
    EXPECT_EQ(m_Archive.LoadIndex(nullptr), 0);
    EXPECT_EQ(m_Archive.LoadIndex(list.c_str()), 0);
    MakeFile(list, "SECOND\nsecond\nnone\nthirdX");
    EXPECT_EQ(m_Archive.LoadIndex(list.c_str()), 1);
    const std::vector<HeardMessage> heard = m_Messages.Take();
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].line, 602);
    EXPECT_EQ(heard[0].text, "Entry none not found in Big File " + m_Path);
    m_Archive.SaveIndex(list.c_str(), 0);
    EXPECT_EQ(TextOf(list), "second\nthird\nfirst\nnew\n");
    m_Archive.SaveIndex(list.c_str(), 1);
    EXPECT_EQ(TextOf(list).substr(0, 31), "Offset         40 : second (2)\n");
}

const struct {
    const char* name;
    std::string bytes;
    int opens, entries, validLast, saves;
} kDamaged[] = {
    {"empty", "", 1, 0, 0, 1},
    {"no archive", "ZMBH" + WordBytes(0), 0, 0, 0, 0},
    {"shorter than the magic", "ZMB", 0, 0, 0, 0},
    {"ends in its header", "ZMBG\1\0", 1, 0, 0, 1},
    {"no entries", ArchiveBytes({}), 1, 0, 0, 1},
    {"ends in its index", ArchiveBytes({{"a", "1"}, {"b", "2"}}).substr(0, 17), 1, 1, 0, 0},
    {"an index beyond the file", "ZMBG" + WordBytes(0xFFFFFFFF) + "a" + std::string(5, '\0'), 1, 1, 0, 1},
    {"an unterminated name", "ZMBG" + WordBytes(8) + std::string("a\0\1\0\0\0bbX", 9), 1, 1, 1, 1},
    {"a size that is cut", "ZMBG" + WordBytes(9) + std::string("a\0\1\0\0\0b\0\1X", 10), 1, 1, 1, 1},
    {"a size that lacks a byte", "ZMBG" + WordBytes(11) + std::string("a\0\1\0\0\0b\0\1\0\0X", 12), 1, 1, 1, 1},
    {"an overlong name", ArchiveBytes({{"a", "1"}, {std::string(65535, 'n'), "2"}}), 1, 1, 1, 1},
    {"the longest name", ArchiveBytes({{"a", "1"}, {std::string(65534, 'n'), "2"}}), 1, 2, 1, 1},
    {"ends in its last entry", ArchiveBytes({{"a", "1"}, {"b", "22"}}).substr(0, 22), 1, 2, 0, 0},
    {"a size beyond 2 GiB", "ZMBG" + WordBytes(6) + std::string("a\0\xF0\xFF\xFF\xFF", 6), 1, 1, 0, 0},
    {"offsets beyond 4 GiB",
     "ZMBG" + WordBytes(12) +
         std::string("a\0\xF0\xFF\xFF\xFF"
                     "b\0\1\0\0\0xyz",
                     15),
     1, 2, 0, 0},
    {"zeros", "ZMBG" + WordBytes(20) + std::string(20, '\0'), 1, 1, 0, 1},
    {"zeros between entries", ArchiveBytes({{"a", "1"}, {"", ""}, {"", ""}, {"", "2"}, {"", ""}, {"b", "3"}}), 1, 5, 1,
     1},
};

TEST_F(ZmBigFileTest, DamagedArchivesOpenAsFarAsTheyMakeSense)
{
    for (const auto& row : kDamaged) {
        SCOPED_TRACE(row.name);
        MakeFile(m_Path, row.bytes);
        ASSERT_EQ(m_Archive.Open(m_Path.c_str(), 1), row.opens);
        ASSERT_EQ(m_Archive.GetEntryCount(), row.entries);
        ZmSubFile sub;
        EXPECT_EQ(m_Archive.GetEntryFile(row.entries - 1, &sub), row.entries > 0);
        EXPECT_EQ(sub.IsValid(), row.validLast);
        m_Messages.Take();
        EXPECT_EQ(m_Archive.Save(nullptr, nullptr), row.saves);
        EXPECT_EQ(m_Messages.Take().size(), row.opens != 0 && row.saves == 0 ? 1u : 0u);
        if (row.saves == 0) {
            EXPECT_EQ(BytesOf(m_Path), row.bytes);
            for (int last; (last = m_Archive.GetEntryCount() - 1) >= 0;) {
                EXPECT_EQ(m_Archive.Remove(m_Archive.GetEntryName(last)), 1);
            }
            EXPECT_EQ(m_Archive.Save(nullptr, nullptr), row.opens) << "without its entries";
        }
        std::filesystem::remove(m_Path);
    }
    EXPECT_EQ(m_Archive.Open((m_Folder / "no/such/folder").c_str(), 1), 0);
    EXPECT_EQ(m_Archive.Open(m_Folder.Path().c_str(), 1), 0);
}

TEST_F(ZmBigFileTest, WhatCannotBeSavedStaysAsItIs)
{
    const Members members = {{"a", "one"}, {"b", Bytes(100000)}};
    Make(members);
    AppendBytes("c", "new");
    std::filesystem::create_directory(m_Folder / "sub");
    EXPECT_EQ(m_Archive.Save((m_Folder / "sub").c_str(), nullptr), 0) << "a folder is not replaced";
    EXPECT_EQ(Saved(), members);
    ZmSubFile sub;
    ASSERT_EQ(m_Archive.Find("b", &sub), 1);
    EXPECT_EQ(ReadSub(sub), members[1].second);

    ZmFile reader;
    ASSERT_TRUE(reader.Open(m_Path.c_str(), ZmFile::READONLY));
    EXPECT_EQ(m_Archive.Save(nullptr, nullptr), 1) << "another reader";
    EXPECT_EQ(Saved().size(), 3u);
    EXPECT_EQ(sub.IsValid(), 0);
    reader.Close();
    EXPECT_EQ(m_Archive.Save(nullptr, nullptr), 0) << "its bytes are no longer open";
    EXPECT_EQ(Saved().size(), 3u);
    EXPECT_EQ(m_Folder.Files(), (std::vector<std::string>{"archive.zmbg", "sub"}));
}

}  // namespace
