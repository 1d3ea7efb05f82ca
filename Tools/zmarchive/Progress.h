#pragma once

#include "ZmBigFile.h"

#include <string>

/// Shows progress on the standard error stream: a bar on a terminal, otherwise one line per quarter.
class ProgressBar : public ZmBigFile::ProgressionCallback {
public:
    ProgressBar(const char* what, bool quiet);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Progress(int percent) override;

    /// Erases the bar, so that other text can be written.
    void Clear();

private:
    const char* m_What;
    bool m_Quiet, m_Bar;
    int m_Last = 0;
    bool m_Shown = false;
};
