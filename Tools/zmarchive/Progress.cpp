#include "Progress.h"

#include "System.h"

#include <cstdio>

ProgressBar::ProgressBar(const char* what, bool quiet) : m_What(what), m_Quiet(quiet), m_Bar(IsTerminal(stderr)) {}

ProgressBar::~ProgressBar()
{
    Clear();
}

void ProgressBar::Progress(int percent)
{
    if (m_Quiet || percent == m_Last) {
        return;
    }
    constexpr int kWidth = 40, kLines = 4;
    if (m_Bar) {
        const int filled = percent * kWidth / 100;
        std::fprintf(stderr, "\r%s [%-*.*s] %3d %%", m_What, kWidth, filled, "########################################",
                     percent);
        std::fflush(stderr);
        m_Shown = true;
    } else if (percent * kLines / 100 != m_Last * kLines / 100) {
        std::fprintf(stderr, "%s %d %%\n", m_What, percent);
    }
    m_Last = percent;
}

void ProgressBar::Clear()
{
    if (m_Shown) {
        std::fprintf(stderr, "\r%70s\r", "");
    }
    m_Shown = false;
}
