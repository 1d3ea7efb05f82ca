#include "ZmAllocator.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

// A process may exit while its threads use the allocator: what they hold and what they ask for must stay usable.

namespace {

void UseForEver()
{
    ZmAllocator& allocator = ZmAllocator::Instance();
    for (unsigned size = 100;; size = size % 5000 + 100) {
        void* scratch = allocator.AllocateScratch(size);
        void* pooled = allocator.AllocatePool(40);
        XString* string = allocator.AllocateScratchString();
        if (scratch != nullptr && pooled != nullptr && string != nullptr) {
            memset(scratch, 1, size);
            memset(pooled, 1, 40);
            *string = "a text for the heap, longer than the shortest of the blocks";
        }
        allocator.ReleaseScratchString(string);
        allocator.ReleasePool(40, pooled);
        allocator.ReleaseScratch(scratch);
    }
}

}  // namespace

int main()
{
    for (int round = 0; round < 30; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(60);
            for (int i = 0; i < 4; ++i) {
                std::thread(UseForEver).detach();
            }
            usleep(1000);
            exit(0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        if (status != 0) {
            fprintf(stderr, "process %d ended with status %d\n", round, status);
            return 1;
        }
    }
    return 0;
}
