# How the library is compiled. keslmx_flags is for everything that goes into a library, keslmx_warnings for all our code.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS ON) # compiler vector types
set(CMAKE_C_STANDARD 99)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O3")
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize|-fprofile-instr") # -O3 then takes minutes for some modules
    set(CMAKE_CXX_FLAGS_RELEASE "-O1")
endif()
find_package(OpenMP REQUIRED COMPONENTS CXX)

add_library(keslmx_warnings INTERFACE)
target_compile_options(keslmx_warnings INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Werror
    # clang: g++'s loop pragmas; loops that it leaves as they are; -Wconversion without signs, as g++ has it;
    # & of masks, which are bool for one object
    $<$<CXX_COMPILER_ID:Clang>:-Wno-unknown-pragmas -Wno-pass-failed -Wno-sign-conversion -Wno-bitwise-instead-of-logical>)

add_library(keslmx_flags INTERFACE)
target_compile_options(keslmx_flags INTERFACE
    -ffp-contract=off      # each product is rounded before it is added; g++ and clang fuse them by default
    -fno-math-errno        # a root is one instruction: nobody reads errno here
    -fno-trapping-math     # no exception flags are promised, so comparisons and selections may be vectorised
    -fvisibility=hidden    # only the functions of cmake/exports.map leave the library
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti>
    # errors in a minted function: say what is wrong, not how its name was made
    $<$<CXX_COMPILER_ID:GNU>:-ftrack-macro-expansion=0 -fmax-errors=3>
    # memory for time: a module takes up to 1.2 gigabytes
    "$<$<CXX_COMPILER_ID:GNU>:SHELL:--param ggc-min-heapsize=500000>")
target_link_libraries(keslmx_flags INTERFACE keslmx_warnings)
