#pragma once

#include <cstdio>
#include <string>

/// A file that stands in for the standard input or output, which archives cannot use, since they seek. It lies in a new
/// folder among the system's temporary files, which nobody else can read and the destructor removes. All functions
/// throw Failure.
class Spool {
public:
    Spool();
    ~Spool();
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;

    std::string Path() const { return m_Folder + "/archive"; }

    void CopyFrom(FILE* stream) const;
    void CopyTo(FILE* stream) const;

private:
    std::string m_Folder;
};
