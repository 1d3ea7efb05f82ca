#pragma once

#include "ZmBigFile.h"

#include <string>

/// Shows on the standard error how far something is: a bar on a terminal, elsewhere a line for each quarter.
class ProgressBar : public ZmBigFile::ProgressionCallback {
public:
    ProgressBar(const char* what, bool quiet);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Progress(int percent) override;

    /// Takes the bar away, so that something else can be written.
    void Clear();

private:
    const char* m_What;
    bool m_Quiet, m_Bar;
    int m_Last = 0;
    bool m_Shown = false;
};
