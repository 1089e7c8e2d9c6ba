#include "platform/linux/ChildLife.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace rv52 {

void LiveAsLongAs(int parent) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    // One that ended before this sends no signal any more.
    if (getppid() != parent) _exit(1);
}

}  // namespace rv52
