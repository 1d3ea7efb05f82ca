#pragma once

#include "ZmThread.h"

/// What the library does with threads behind their public face.
struct ZmThreadStart {
    /// Makes the registry and the object of the loading thread. A step of the library's start-up.
    static void WrapMainThread();

    /// Frees both. Objects that are destroyed later find no registry.
    static void ForgetMainThread();

    /// The function of every thread; its argument is the ZmThread.
    static unsigned int Run(void* thread);
};
