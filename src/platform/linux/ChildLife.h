#pragma once

namespace rv52 {

// Called in a child of this process before it runs its program: it ends when its parent does, however that
// ends, and not before: a terminal that is closed, or where Ctrl+C is pressed, tells only the parent.
void LiveAsLongAs(int parent);

}  // namespace rv52
