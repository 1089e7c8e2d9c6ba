#include "platform/linux/ChildLife.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace rv52 {

void LiveAsLongAsParent() {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

}  // namespace rv52
