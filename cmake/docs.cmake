# The manual pages of all functions, which are installed, and, by `ninja site`, the pages and the headers as a site in share/doc.
find_package(Python3 COMPONENTS Interpreter)
if(NOT Python3_FOUND)
    message(STATUS "No Python, so no manual pages")
    return()
endif()
set(KESL_MANUAL ${PROJECT_BINARY_DIR}/share/man)
set(headers ${PROJECT_SOURCE_DIR}/include/kesl.h ${PROJECT_SOURCE_DIR}/include/keslmx.h ${PROJECT_SOURCE_DIR}/include/keslcorex.h)
add_custom_command(OUTPUT ${KESL_MANUAL}/done DEPENDS ${headers} ${PROJECT_SOURCE_DIR}/tools/manual.py VERBATIM
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${KESL_MANUAL}
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/manual.py man ${KESL_MANUAL} ${headers}
    COMMAND ${CMAKE_COMMAND} -E touch ${KESL_MANUAL}/done)
add_custom_target(manual ALL DEPENDS ${KESL_MANUAL}/done)
install(DIRECTORY ${KESL_MANUAL}/man3 DESTINATION ${CMAKE_INSTALL_MANDIR})

find_package(Doxygen)
if(DOXYGEN_FOUND)
    set(KESL_SITE ${PROJECT_BINARY_DIR}/share/doc)
    configure_file(docs/Doxyfile.in Doxyfile @ONLY)
    file(MAKE_DIRECTORY ${KESL_SITE})
    add_custom_target(site VERBATIM
        COMMAND ${CMAKE_COMMAND} -E rm -rf ${KESL_SITE}/html
        COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/Doxyfile)
    install(DIRECTORY ${KESL_SITE}/html DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL) # if it was made
endif()
