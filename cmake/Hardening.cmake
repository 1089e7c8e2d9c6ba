# What users run, and what the package holds: a broken pointer ends the program rather than being made use of.
# Debug builds and those under the sanitizers have their own watchers.
if(NOT CMAKE_BUILD_TYPE STREQUAL "Release")
  return()
endif()

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)

# Not every compiler and processor knows these. The last one keeps calls within a file as fast as they were: nobody is
# to replace a function of these programs.
include(CheckCXXCompilerFlag)
foreach(flag -fstack-clash-protection -fcf-protection=full -mbranch-protection=standard -fno-semantic-interposition)
  string(MAKE_C_IDENTIFIER "RV52_HAS${flag}" known)
  check_cxx_compiler_flag(${flag} ${known})
  if(${known})
    add_compile_options(${flag})
  endif()
endforeach()
