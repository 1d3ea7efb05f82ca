#pragma once

#include <stddef.h>

#include <vector>

/// What can fail. Each kind but MEMORY and THREADS is a group of system calls.
struct FaultKind {
    const char* name;
    int error;               ///< errno of the failing call
    bool isShort;            ///< the call succeeds with half of its bytes
    bool isDone;             ///< the call takes effect before it fails
    std::vector<int> calls;  ///< numbers of the system calls
};

extern const FaultKind kFaultKinds[];
extern const size_t kFaultKindCount;

/// Routes the process's system calls through a handler. Returns false where the system has no such filter. Call once.
bool InstallInjection();

/// Lets the call number `count` of that kind fail, counted from 1 and from now on, in all threads; if `stays`, all
/// later ones too.
void ArmFault(const FaultKind& kind, unsigned count, bool stays);

/// Ends the faults and returns how many there were.
unsigned DisarmFaults();

/// Blocks of memory that the process has allocated and not freed.
long LiveBlocks();
