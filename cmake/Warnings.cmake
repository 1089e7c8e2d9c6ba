# Every target of the project links rv52_warnings: warnings wide, and fatal.
add_library(rv52_warnings INTERFACE)
target_compile_options(rv52_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wformat=2 -Wimplicit-fallthrough
  -Wdouble-promotion -Wextra-semi -Wundef -Werror
  # g++ 12, optimising, finds overlaps in the library's own std::string code that are none.
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wuseless-cast>)
