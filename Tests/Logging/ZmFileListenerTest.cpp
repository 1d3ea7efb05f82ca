#include "ZmFileListener.h"

#include "Support/LogClock.h"
#include "Support/TemporaryFolder.h"
#include "ZmLog.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Lines = std::vector<std::string>;

class ZmFileListenerTest : public testing::Test {
protected:
    ZmFileListenerTest() { Renew(); }

    /// Replaces the listener by a new one of the same name.
    void Renew(int flags = 0)
    {
        m_Listener.reset(static_cast<ZmFileListener*>(ZmFileListener::ListenerFactory("trace")));
        m_Listener->SetDirectory((m_Folder / "").c_str());
        m_Listener->SetFlags(flags);
    }

    void Write(const char* text) { m_Listener->Output(0, ZmLog::LEVEL_INFO, 1, "file", text); }

    /// The texts in a file, without the parts before ": ".
    Lines Read(const std::string& name) const
    {
        Lines texts;
        std::ifstream file(m_Folder / name);
        for (std::string line; std::getline(file, line);) {
            EXPECT_EQ(line.compare(0, 9, "[INFO] : "), 0) << line;
            texts.push_back(line.substr(9));
        }
        EXPECT_EQ(file.rdstate() & std::ios::badbit, 0);
        return texts;
    }

    size_t Files() const
    {
        return size_t(std::distance(fs::directory_iterator(m_Folder.Path()), fs::directory_iterator()));
    }

    const TemporaryFolder m_Folder;
    const SetLogClock m_Clock;
    std::unique_ptr<ZmFileListener> m_Listener;
};

TEST_F(ZmFileListenerTest, EachLineIsOnTheDiskAtOnce)
{
    EXPECT_EQ(Files(), 0u) << "opened by the first line";
    Write("one");
    EXPECT_EQ(Read("trace.log"), Lines{"one"});
    Write("100 %s%n");
    EXPECT_EQ(Read("trace.log"), (Lines{"one", "100 %s%n"}));
    m_Listener->SetExt("txt");
    m_Listener->SetDirectory((m_Folder / "sub/").c_str());
    Write("");
    EXPECT_EQ(Read("trace.log"), (Lines{"one", "100 %s%n", ""})) << "takes effect for files opened later";
    EXPECT_EQ(Files(), 1u);
}

TEST_F(ZmFileListenerTest, AFileIsReplacedUnlessItIsKept)
{
    Write("old");
    Renew();
    EXPECT_EQ(Read("trace.log"), Lines{"old"});
    Write("new");
    EXPECT_EQ(Read("trace.log"), Lines{"new"});
    Renew(ZmLogListener::KEEP_FILE);
    Write("added");
    EXPECT_EQ(Read("trace.log"), (Lines{"new", "added"}));
}

TEST_F(ZmFileListenerTest, NamesAreMadeOfWhatIsSet)
{
    m_Listener->SetDirectory(WithBackslashes(m_Folder / "a/b/x-").c_str());
    m_Listener->SetExt("t.x");
    EXPECT_EQ(m_Listener->GetDirectory(), WithBackslashes(m_Folder / "a/b/x-"));
    EXPECT_STREQ(m_Listener->GetExt(), "t.x");
    Write("text");
    EXPECT_EQ(Read("a/b/x-trace.t.x"), Lines{"text"}) << "creates the missing folders";
    m_Listener->SetDirectory(nullptr);
    m_Listener->SetExt(nullptr);
    EXPECT_STREQ(m_Listener->GetDirectory(), "");
    EXPECT_STREQ(m_Listener->GetExt(), "");
}

TEST_F(ZmFileListenerTest, EachDayHasItsFileFromLocalMidnightOn)
{
    Renew(ZmLogListener::DATED);
    SetLogClock::s_Now = LocalMilliseconds(2004, 3, 5, 0, 0, 0, 0);
    Write("first");
    SetLogClock::s_Now = LocalMilliseconds(2004, 3, 5, 23, 59, 59, 999);
    Write("last");
    EXPECT_EQ(Files(), 1u);
    SetLogClock::s_Now += 1;
    Write("next day");
    EXPECT_EQ(Read("trace[04 03 05].log"), (Lines{"first", "last"}));
    EXPECT_EQ(Read("trace[04 03 06].log"), Lines{"next day"});
    SetLogClock::s_Now = LocalMilliseconds(2004, 4, 6, 0, 0, 0, 0);
    Write("same day of another month");
    EXPECT_EQ(Read("trace[04 04 06].log"), Lines{"same day of another month"});
    SetLogClock::s_Now = LocalMilliseconds(2004, 12, 31, 23, 59, 59, 0);
    Write("old year");
    SetLogClock::s_Now += 1000;
    Write("new year");
    SetLogClock::s_Now += 3600000;
    Write("later");
    EXPECT_EQ(Read("trace[04 12 31].log"), Lines{"old year"});
    EXPECT_EQ(Read("trace[05 01 01].log"), (Lines{"new year", "later"}));
    EXPECT_EQ(Files(), 5u);
}

TEST_F(ZmFileListenerTest, TheDateCountsFromTheFlagOn)
{
    SetLogClock::s_Now = LocalMilliseconds(2004, 3, 5, 12, 0, 0, 0);
    Write("undated");
    m_Listener->SetFlags(ZmLogListener::DATED);
    Write("dated");
    m_Listener->SetFlags(0);
    SetLogClock::s_Now = LocalMilliseconds(2004, 3, 6, 12, 0, 0, 0);
    Write("the open file stays");
    EXPECT_EQ(Read("trace.log"), Lines{"undated"});
    EXPECT_EQ(Read("trace[04 03 05].log"), (Lines{"dated", "the open file stays"}));
    Renew(ZmLogListener::DATED | ZmLogListener::KEEP_FILE);
    SetLogClock::s_Now = LocalMilliseconds(2004, 3, 5, 13, 0, 0, 0);
    Write("added");
    EXPECT_EQ(Read("trace[04 03 05].log"), (Lines{"dated", "the open file stays", "added"}));
}

TEST_F(ZmFileListenerTest, WritingBeginsWhenTheWayIsFree)
{
    MakeFile(m_Folder / "way");
    m_Listener->SetDirectory((m_Folder / "way/in/").c_str());
    Write("lost");
    fs::remove(m_Folder / "way");
    Write("kept");
    EXPECT_EQ(Read("way/in/trace.log"), Lines{"kept"});

    Renew();
    fs::create_directory(m_Folder / "trace.log");
    Write("lost");
    fs::remove(m_Folder / "trace.log");
    Write("kept");
    EXPECT_EQ(Read("trace.log"), Lines{"kept"});

    Renew();
    m_Listener->SetDirectory((m_Folder / std::string(65000, 'x') + '/').c_str());
    Write("lost");
    m_Listener->SetDirectory((m_Folder / "").c_str());
    Write("kept again");
    EXPECT_EQ(Read("trace.log"), Lines{"kept again"});
}

}  // namespace
