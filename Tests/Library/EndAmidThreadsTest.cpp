#include "XString.h"

#include <chrono>
#include <thread>

// A process that ends while its threads use strings. Windows ends them wherever they stand, and then runs the DLL's
// destructors, which have strings of their own: this program must end all the same.

namespace {

void UseStrings()
{
    for (;;) {
        XString text("short");
        text << " and longer";
    }
}

}  // namespace

int main()
{
    for (int i = 0; i < 8; ++i) {
        std::thread(UseStrings).detach();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return 0;
}
