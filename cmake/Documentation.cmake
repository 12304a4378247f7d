# The target `docs` makes pages of the public headers and of the documents, in the folder docs of the build tree.
if(NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
    return()
endif()
set(DOXYGEN_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/docs)
set(DOXYGEN_HTML_OUTPUT .)
set(DOXYGEN_STRIP_FROM_PATH ${PROJECT_SOURCE_DIR})
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE ${PROJECT_SOURCE_DIR}/README.md)
# A public member without a text is a warning.
set(DOXYGEN_EXTRACT_ALL NO)
set(DOXYGEN_WARN_IF_UNDOCUMENTED YES)
set(DOXYGEN_JAVADOC_AUTOBRIEF YES)
set(DOXYGEN_HAVE_DOT NO)
set(DOXYGEN_QUIET YES)
# The pages list the headers as they are.
set(DOXYGEN_STRIP_CODE_COMMENTS NO)
set(DOXYGEN_MACRO_EXPANSION YES)
set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
set(DOXYGEN_PREDEFINED VXUT_EXPORT= VXFW_EXPORT= VXUT_PRINTF\(a,b\)= VXFW_PRINTF\(a,b\)= VXFW_THREADS\(a\)= __cplusplus=201703L)
doxygen_add_docs(docs ${framework_headers} ${util_headers} ${PROJECT_SOURCE_DIR}/README.md
                 ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_SOURCE_DIR}/CONTRIBUTING.md ${PROJECT_SOURCE_DIR}/SECURITY.md
                 ${PROJECT_SOURCE_DIR}/docs COMMENT "Making pages in ${PROJECT_BINARY_DIR}/docs")
