#pragma once

namespace rv52 {

// Called in a child process before it runs its program: it ends when its parent does, however that ends.
void EndWithParent();

}  // namespace rv52
