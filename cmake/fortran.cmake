# The modules kesl, keslmx and keslcorex, where there is a Fortran compiler. A module file serves the compiler that wrote it; for
# any other the sources are installed, too.
include(CheckLanguage)
check_language(Fortran)
find_package(Python3 COMPONENTS Interpreter)
if(NOT CMAKE_Fortran_COMPILER OR NOT Python3_FOUND)
    message(STATUS "No Fortran compiler or no Python, so no Fortran modules")
    return()
endif()
enable_language(Fortran)
set(KESL_FORTRAN_WARNINGS -std=f2018 -Wall -Wextra -pedantic -Werror)

set(KESL_FORTRAN_SOURCES)
set(KESL_FORTRAN_DIRECTORY ${PROJECT_BINARY_DIR}/fortran)
foreach(module kesl keslmx keslcorex)
    set(header ${PROJECT_SOURCE_DIR}/include/${module}.h)
    set(source ${KESL_FORTRAN_DIRECTORY}/${module}.f90)
    set(generator ${PROJECT_SOURCE_DIR}/fortran/generate.py)
    add_custom_command(OUTPUT ${source} DEPENDS ${header} ${generator} ${PROJECT_SOURCE_DIR}/fortran/kesl.f90.in VERBATIM
        COMMAND ${CMAKE_COMMAND} -E make_directory ${KESL_FORTRAN_DIRECTORY}
        COMMAND Python3::Interpreter ${generator} ${header} ${source})
    list(APPEND KESL_FORTRAN_SOURCES ${source})
endforeach()

set(KESL_FORTRAN_MODULES ${CMAKE_INSTALL_LIBDIR}/fortran CACHE STRING "Where Fortran module files are installed")
add_library(kesl_fortran STATIC ${KESL_FORTRAN_SOURCES})
target_link_libraries(kesl_fortran PUBLIC kesl)
target_include_directories(kesl_fortran PUBLIC
    $<BUILD_INTERFACE:${KESL_FORTRAN_DIRECTORY}> $<INSTALL_INTERFACE:${KESL_FORTRAN_MODULES}>)
set_target_properties(kesl_fortran PROPERTIES EXPORT_NAME fortran  POSITION_INDEPENDENT_CODE ON
    Fortran_MODULE_DIRECTORY ${KESL_FORTRAN_DIRECTORY})
if(CMAKE_Fortran_COMPILER_ID STREQUAL GNU)
    target_compile_options(kesl_fortran PRIVATE ${KESL_FORTRAN_WARNINGS})
endif()
add_library(kesl::fortran ALIAS kesl_fortran)
