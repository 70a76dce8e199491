# The Python package kesl: the extension _ufuncs and what stands in python/kesl. Off unless asked for, since it needs
# python3-dev and python3-numpy.
option(KESLMX_PYTHON "Build the Python package" OFF)
if(NOT KESLMX_PYTHON OR CMAKE_CXX_FLAGS MATCHES "-fsanitize") # an interpreter without the sanitizer cannot load it
    return()
endif()
if(EXISTS /usr/bin/python3)
    set(Python3_EXECUTABLE /usr/bin/python3 CACHE FILEPATH "Interpreter to build for") # the system's, whatever is first in PATH
endif()
find_package(Python3 REQUIRED COMPONENTS Interpreter Development.Module NumPy)
set(KESLMX_PYTHON_DIR lib/python${Python3_VERSION_MAJOR}.${Python3_VERSION_MINOR}/dist-packages CACHE STRING
    "Where the Python package is installed, below the prefix") # Debian's interpreter looks there below /usr and /usr/local

Python3_add_library(kesl_python MODULE WITH_SOABI ${PROJECT_SOURCE_DIR}/python/ufuncs.cpp)
target_link_libraries(kesl_python PRIVATE keslmx_warnings kesl keslcorex64 Python3::NumPy)
target_include_directories(kesl_python PRIVATE ${PROJECT_SOURCE_DIR}/include)
target_compile_options(kesl_python PRIVATE -fvisibility=hidden)
# In the build tree and in the installed one, the libraries lie where their levels are found.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY ${KESLMX_PYTHON_DIR}/kesl OUTPUT_VARIABLE to_libraries)
set_target_properties(kesl_python PROPERTIES
    OUTPUT_NAME _ufuncs  LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/python/kesl
    INSTALL_RPATH $ORIGIN/${to_libraries})

file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/python/kesl/*.py ${PROJECT_SOURCE_DIR}/python/kesl/*.pyi
    ${PROJECT_SOURCE_DIR}/python/kesl/py.typed)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/python/kesl)
foreach(source IN LISTS sources) # so that PYTHONPATH=build/.../python serves for trying
    cmake_path(GET source FILENAME name)
    file(CREATE_LINK ${source} ${PROJECT_BINARY_DIR}/python/kesl/${name} SYMBOLIC)
endforeach()
install(TARGETS kesl_python LIBRARY DESTINATION ${KESLMX_PYTHON_DIR}/kesl)
install(FILES ${sources} DESTINATION ${KESLMX_PYTHON_DIR}/kesl)
