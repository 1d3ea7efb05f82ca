#pragma once

#include "ZmThread.h"

/// The library's internal access to ZmThread.
struct ZmThreadStart {
    /// Creates the registry and the object of the loading thread. Called at start-up.
    static void WrapMainThread();

    /// Frees both, unless threads may still use them. Objects destroyed later find no registry.
    static void ForgetMainThread();

    /// The entry function of every thread; its argument is the ZmThread.
    static unsigned int Run(void* thread);
};
