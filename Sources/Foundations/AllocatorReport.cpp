#include "Foundations/AllocatorReport.h"

#include <algorithm>
#include <stdarg.h>
#include <stdio.h>

namespace zm {

namespace {

constexpr char kRule[] = "|--------------------------------------------------------|\n";

/// The lines of the report. All numbers are printed with %d; larger values are clamped to the largest int.
class Lines {
public:
    explicit Lines(std::string& text) : m_Text(text) {}

    void Title(const char* line) { m_Text.append(kRule).append(line).append(kRule); }

    void Print(const char* format, ...) __attribute__((__format__(printf, 2, 3)))
    {
        char line[160];
        va_list arguments;
        va_start(arguments, format);
        vsnprintf(line, sizeof(line), format, arguments);
        va_end(arguments);
        m_Text += line;
    }

private:
    std::string& m_Text;
};

int Figure(uint64_t value)
{
    return int(std::min(value, uint64_t(INT_MAX)));
}

int Kilobytes(uint64_t bytes)
{
    return Figure(bytes / 1024);
}

void PrintStrings(Lines& lines, const ZmAllocator::Stats& stats)
{
    lines.Print("Strings Statistics :\n");
    lines.Title("|                        S T R I N G S                   |  \n");
    lines.Print("  Total Strings       : %10d, size = %10d ko\n", Figure(stats.StringCount),
                Kilobytes(stats.StringBytes));
    lines.Print("  Peak Strings        : %10d, size = %10d ko\n", Figure(stats.PeakStringCount),
                Kilobytes(stats.PeakStringBytes));
    lines.Print("  Accumulated Strings : %10d, size = %10d ko\n\n", Figure(stats.TotalStringCount),
                Kilobytes(stats.TotalStringBytes));
    lines.Print("  Shared Strings\t     : %10d\n", 0);
    lines.Print("  UnShared Strings\t : %10d\n", Figure(stats.StringCount));
}

void PrintPools(Lines& lines, const XArray<AllocatorFigures::Pool>& pools)
{
    lines.Title("|                          FIXED SIZE POOLS\t            |\n");
    uint64_t bytes = 0;
    for (const AllocatorFigures::Pool* pool = pools.Begin(); pool != pools.End(); ++pool) {
        lines.Print(" Pool %10d : Chunks Count : %d (%5dKo), Occupation : %d%% \n", pool->blockSize, pool->chunks,
                    Kilobytes(uint64_t(pool->bytes)), pool->occupation);
        bytes += uint64_t(pool->bytes);
    }
    lines.Print(" Pools : %d Kb in %d pools\n", Kilobytes(bytes), pools.Size());
}

void PrintPages(Lines& lines, const TextPages& pages)
{
    lines.Title("|                   SMALL SIZE POOLS                     |\n");
    lines.Print("  Small Allocator\t : %10d Pages\n", Figure(pages.count));
    lines.Print("    Occupation\t\t : %10d ko\n", Kilobytes(pages.bytesInUse));
    lines.Print("    Unoccupied\t\t : %10d ko\n", Kilobytes(pages.bytesFree));
    lines.Title("|                   FREE SIZE POOLS                     |\n");
    lines.Print("  Free Allocator\t : %10d Pages\n", 0);
    lines.Print("+-- Occupation\t : %10d ko\n", 0);
    lines.Print("    Unoccupied\t : %10d ko\n", 0);
}

void PrintSummary(Lines& lines, const ZmAllocator::Stats& stats)
{
    const uint32_t count = stats.MemoryCount, total = uint32_t(stats.TotalBytes);
    lines.Title("|                       G E N E R A L                    |\n");
    lines.Print("            S U M M A R Y\n\n");
    lines.Print("        Total %10d octets\n", stats.CurrentBytes);
    lines.Print("         Peak %10d octets\n", stats.PeakBytes);
    lines.Print("  Accumulated %10d octets\n\n", stats.TotalBytes);
    lines.Print("  Current     %10d (%5d x %10d) octets\n", stats.CurrentBytes, Figure(count),
                count != 0 ? Figure(total / count) : 0);
}

}  // namespace

std::string AllocatorReport(const AllocatorFigures& figures)
{
    std::string text;
    Lines lines(text);
    PrintStrings(lines, figures.stats);
    lines.Title("|                        M E M O R Y                     |  \n");
    PrintPools(lines, figures.pools);
    PrintPages(lines, figures.textPages);
    lines.Title("|                   SCRATCHS\t\t\t                    |\n");
    lines.Print(" Total Scratch memory  %d Kb in %d pools \n", Kilobytes(figures.scratchBytes), figures.scratchCount);
    PrintSummary(lines, figures.stats);
    return text;
}

}  // namespace zm
