#include "platform/linux/ChildLife.h"

#include <csignal>
#include <sys/prctl.h>

namespace rv52 {

void EndWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

}  // namespace rv52
