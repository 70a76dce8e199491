# kesl, the library for stacks of small matrices: like keslmx, once for each level.
set(KESL_VERSION 1.0.0)
find_package(TBB REQUIRED)
file(GLOB KESL_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/stacks/*.cpp)
set_source_files_properties(${PROJECT_SOURCE_DIR}/stacks/threads.cpp PROPERTIES COMPILE_OPTIONS "-fexceptions;-frtti") # TBB's

function(kesl_library target directory)
    add_library(${target} SHARED ${KESL_SOURCES})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
    target_compile_definitions(${target} PRIVATE "KESL_VERSION=\"${KESL_VERSION}\"")
    target_compile_options(${target} PRIVATE ${ARGN}
        # loops over tiles of fixed orders are written out, so that their packs live in registers
        "$<$<CXX_COMPILER_ID:GNU>:SHELL:--param max-completely-peeled-insns=4000>"
        # what the intrinsics of g++ 12 leave undefined on purpose
        "$<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized;-Wno-uninitialized>")
    target_link_libraries(${target} PRIVATE keslmx_flags keslcorex64 TBB::tbb)
    target_link_options(${target} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/stacks.map -Wl,--as-needed
        -Wl,-z,nodelete) # the threads' library keeps threads that return to this code
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
    set_target_properties(${target} PROPERTIES
        BUILD_WITH_INSTALL_RPATH ON  OUTPUT_NAME kesl  VERSION ${KESL_VERSION}  SOVERSION 1  LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib${directory}
        LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/stacks.map)
endfunction()

kesl_library(kesl "")
foreach(level IN LISTS KESLMX_LEVELS)
    kesl_library(kesl_${level} /glibc-hwcaps/x86-64-${level} -march=x86-64-${level})
    add_dependencies(kesl kesl_${level})
endforeach()
target_include_directories(kesl PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
add_library(kesl::kesl ALIAS kesl)
