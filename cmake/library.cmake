# The library, once for each level. All levels have one soname; the dynamic loader picks the best that the processor has.
file(GLOB KESLMX_SOURCES CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
    frame/*.cpp elementwise/*.cpp products/*.cpp movement/*.cpp solvers/*.cpp eigen/*.cpp geometry/*.cpp)
list(FILTER KESLMX_SOURCES INCLUDE REGEX "${KESLMX_MODULES}")

# g++ 12.2 fuses sums and differences of products when it vectorises scalar code, in spite of -ffp-contract=off: where
# rotations are computed it must not. Packs are vectors anyway.
file(GLOB KESLMX_ROTATIONS CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} eigen/*.cpp)
set_source_files_properties(${KESLMX_ROTATIONS} PROPERTIES COMPILE_OPTIONS $<$<CXX_COMPILER_ID:GNU>:-fno-tree-vectorize>)

# Modules that share most of their code are compiled together: the code exists once then, and the headers are read once.
# So are the threaded forms of a folder, which are small.
function(keslmx_together group)
    file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${ARGN})
    set_source_files_properties(${sources} PROPERTIES UNITY_GROUP ${group})
endfunction()
keslmx_together(add_matrix elementwise/kesladd_m*.cpp)
keslmx_together(sub_matrix elementwise/keslsub_m*.cpp)
keslmx_together(add_vector elementwise/kesladd_v*.cpp)
keslmx_together(sub_vector elementwise/keslsub_v*.cpp)
keslmx_together(mul_constant elementwise/keslmul_*.cpp)
keslmx_together(saxpy elementwise/keslsaxpy_*.cpp elementwise/kesllcomb_*.cpp)
keslmx_together(copy_32f movement/keslcopy_*_32f.cpp)
keslmx_together(copy_64f movement/keslcopy_*_64f.cpp)
keslmx_together(movement movement/keslextract_*.cpp movement/keslloadidentity_*.cpp movement/kesltranspose_*.cpp)
keslmx_together(products_alone products/keslmul_mm.cpp products/keslmul_mv.cpp products/keslgaxpy_mv.cpp)
keslmx_together(dot products/kesldotproduct_*.cpp)
keslmx_together(cross_trace products/keslcrossproduct_*.cpp products/kesltrace_*.cpp)
keslmx_together(norms products/kesll2norm_*.cpp products/keslfrobnorm_*.cpp)
foreach(folder elementwise products solvers eigen geometry)
    keslmx_together(threaded_${folder} ${folder}/*_omp.cpp)
endforeach()

function(keslmx_library target directory)
    add_library(${target} SHARED ${KESLMX_SOURCES})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
    target_compile_options(${target} PRIVATE ${ARGN})
    target_link_libraries(${target} PRIVATE keslmx_flags keslcorex64 OpenMP::OpenMP_CXX)
    target_link_options(${target} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map -Wl,--as-needed
        -Wl,-z,nodelete) # the OpenMP runtime's idle threads stay in it
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize") # with clang the program brings the sanitizer's runtime, not a library
        target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
    set_target_properties(${target} PROPERTIES
        BUILD_WITH_INSTALL_RPATH ON # the build tree lies as the installed one does
        OUTPUT_NAME keslmx  VERSION 6.1  SOVERSION 6.1  LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib${directory}
        LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map
        UNITY_BUILD ON  UNITY_BUILD_MODE GROUP
        LINKER_LANGUAGE C) # nothing of the C++ runtime is needed, and so nothing of it is linked
endfunction()

keslmx_library(keslmx "")
foreach(level IN LISTS KESLMX_LEVELS)
    keslmx_library(keslmx_${level} /glibc-hwcaps/x86-64-${level} -march=x86-64-${level})
    add_dependencies(keslmx keslmx_${level})
endforeach()
target_include_directories(keslmx PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
add_library(kesl::mx ALIAS keslmx)
