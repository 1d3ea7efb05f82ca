#include "Foundations/AllocatorReport.h"

#include <gtest/gtest.h>
#include <limits.h>

namespace {

#define RULE "|--------------------------------------------------------|\n"

TEST(AllocatorReportTest, TheWholeReport)
{
    zm::AllocatorFigures figures;
    figures.stats.CurrentBytes = 1000;
    figures.stats.PeakBytes = 3000;
    figures.stats.TotalBytes = 2000001;
    figures.stats.MemoryCount = 20;
    figures.stats.StringCount = 7;
    figures.stats.PeakStringCount = 8;
    figures.stats.TotalStringCount = uint64_t(INT_MAX) + 5;
    figures.stats.StringBytes = 1023;
    figures.stats.PeakStringBytes = 1024;
    figures.stats.TotalStringBytes = uint64_t(4) << 40;
    figures.pools.PushBack({8, 2, 8192, 50});
    figures.pools.PushBack({1020, 1, 4080, 100});
    figures.textPages = {2, 70000, 61072};
    figures.scratchBytes = 5000;
    figures.scratchCount = 3;
    EXPECT_EQ(zm::AllocatorReport(figures),
              "Strings Statistics :\n" RULE "|                        S T R I N G S                   |  \n" RULE
              "  Total Strings       :          7, size =          0 ko\n"
              "  Peak Strings        :          8, size =          1 ko\n"
              "  Accumulated Strings : 2147483647, size = 2147483647 ko\n\n"
              "  Shared Strings\t     :          0\n"
              "  UnShared Strings\t :          7\n" RULE
              "|                        M E M O R Y                     |  \n" RULE RULE
              "|                          FIXED SIZE POOLS\t            |\n" RULE
              " Pool          8 : Chunks Count : 2 (    8Ko), Occupation : 50% \n"
              " Pool       1020 : Chunks Count : 1 (    3Ko), Occupation : 100% \n"
              " Pools : 11 Kb in 2 pools\n" RULE "|                   SMALL SIZE POOLS                     |\n" RULE
              "  Small Allocator\t :          2 Pages\n"
              "    Occupation\t\t :         68 ko\n"
              "    Unoccupied\t\t :         59 ko\n" RULE
              "|                   FREE SIZE POOLS                     |\n" RULE
              "  Free Allocator\t :          0 Pages\n"
              "+-- Occupation\t :          0 ko\n"
              "    Unoccupied\t :          0 ko\n" RULE "|                   SCRATCHS\t\t\t                    |\n" RULE
              " Total Scratch memory  4 Kb in 3 pools \n" RULE
              "|                       G E N E R A L                    |\n" RULE "            S U M M A R Y\n\n"
              "        Total       1000 octets\n"
              "         Peak       3000 octets\n"
              "  Accumulated    2000001 octets\n\n"
              "  Current           1000 (   20 x     100000) octets\n");
}

#undef RULE

}  // namespace
