#pragma once

#include <stddef.h>

#include <vector>

/// What can fail, and how. Each kind but "memory" and "threads", the first two, is a group of system calls.
struct FaultKind {
    enum Effect {
        FAILS,
        DOES_NO_HARM,  ///< fails, but the library calls again or does without: its answer stays the same
        IS_SHORT,      ///< the call succeeds with half of its bytes
        IS_DONE        ///< the call takes effect before it fails
    };

    const char* name;
    int error;  ///< errno of the failing call
    Effect effect;
    bool isTypical;          ///< stands for its group where two faults meet
    std::vector<int> calls;  ///< numbers of the system calls
};

extern const std::vector<FaultKind> kFaultKinds;
constexpr size_t kMostFaultKinds = 64;

/// Calls that fail: number `number` of a kind, counted from 1.
struct Fault {
    const FaultKind* kind = nullptr;
    unsigned number = 0;
    bool stays = false;               ///< all later calls of the kind fail too; of interrupted ones, the next few
    const FaultKind* next = nullptr;  ///< after that call, also the first one of this other kind fails
};

/// Routes the process's system calls through a handler. Returns false where the system has no such filter. Call once.
bool InstallInjection();

/// From now on counts the calls of each kind in all threads, and lets those of the fault fail.
void ArmFault(const Fault& fault);

/// Ends the faults and returns how many there were.
unsigned DisarmFaults();

/// The number of calls of a kind while armed.
unsigned CallsOf(const FaultKind& kind);

/// What the process has allocated and not freed: blocks of memory, and their bytes.
long LiveBlocks();
long LiveBytes();
