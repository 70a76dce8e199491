# What is installed: the libraries of all levels, the headers, and what find_package and pkg-config read. Nothing names
# the prefix, so the tree may be staged (DESTDIR), installed elsewhere (cmake --install --prefix) or moved.

# Each library finds the companion beside it; that of a level, beside the plain one.
set_target_properties(keslmx keslcorex64 PROPERTIES INSTALL_RPATH $ORIGIN)
install(TARGETS keslmx keslcorex64 EXPORT keslmx LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(level IN LISTS KESLMX_LEVELS)
    set_target_properties(keslmx_${level} PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/../..")
    install(TARGETS keslmx_${level} # with its link, for dlopen("libkeslmx.so")
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/glibc-hwcaps/x86-64-${level})
endforeach()
set_target_properties(kesl PROPERTIES INSTALL_RPATH $ORIGIN)
install(TARGETS kesl EXPORT kesl LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(level IN LISTS KESLMX_LEVELS) # with the names that a program asks for without a version
    set_target_properties(kesl_${level} PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/../..")
    install(TARGETS kesl_${level} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/glibc-hwcaps/x86-64-${level})
endforeach()
install(FILES include/kesl.h include/kesl.hpp include/keslmx.h include/keslcorex.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# find_package(kesl): kesl::kesl; find_package(keslmx): kesl::mx, and kesl::corex for programs that set the number of threads
include(CMakePackageConfigHelpers)
set_target_properties(keslmx PROPERTIES EXPORT_NAME mx)
set_target_properties(keslcorex64 PROPERTIES EXPORT_NAME corex)
write_basic_package_version_file(keslConfigVersion.cmake VERSION ${KESL_VERSION} COMPATIBILITY SameMajorVersion)
install(EXPORT kesl NAMESPACE kesl:: FILE keslConfig.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kesl)
install(FILES ${PROJECT_BINARY_DIR}/keslConfigVersion.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kesl)
write_basic_package_version_file(keslmxConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(EXPORT keslmx NAMESPACE kesl:: FILE keslmxConfig.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/keslmx)
install(FILES ${PROJECT_BINARY_DIR}/keslmxConfigVersion.cmake DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/keslmx)

# pkg-config: kesl; keslmx, and keslcorex for programs that set the number of threads
function(keslmx_pkg_config name library version description)
    set(up ${CMAKE_INSTALL_PREFIX})
    cmake_path(RELATIVE_PATH up BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
    configure_file(cmake/package.pc.in ${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
keslmx_pkg_config(kesl kesl ${KESL_VERSION} "Linear algebra on stacks of small matrices")
keslmx_pkg_config(keslmx keslmx ${PROJECT_VERSION} "${PROJECT_DESCRIPTION}")
keslmx_pkg_config(keslcorex keslcorex64 ${PROJECT_VERSION} "How many threads keslmx may use")
