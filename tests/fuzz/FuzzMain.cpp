#include "fuzz/Target.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    rv52::fuzz::Target({reinterpret_cast<const char*>(data), size});
    return 0;
}
