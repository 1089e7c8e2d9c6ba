#pragma once

namespace rv52 {

// Called in a child process before it runs its program: it ends when its parent does, however that ends, and
// not before: a terminal that is closed, or where Ctrl+C is pressed, tells only the parent.
void LiveAsLongAsParent();

}  // namespace rv52
