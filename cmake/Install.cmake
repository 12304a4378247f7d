# The headers of both libraries go into one folder, so that they find each other as they do in the tree.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VXut)
install(TARGETS VXfw VXut EXPORT VXutTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libraries NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
vxut_public_headers(VXfw framework_headers)
vxut_public_headers(VXut util_headers)
install(FILES ${framework_headers} ${util_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/VXut COMPONENT headers)
install(EXPORT VXutTargets NAMESPACE VXut:: DESTINATION ${package_dir} COMPONENT development)

configure_package_config_file(cmake/VXutConfig.cmake.in ${PROJECT_BINARY_DIR}/VXutConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VXutConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VXutConfig.cmake ${PROJECT_BINARY_DIR}/VXutConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# Clients of static libraries need what the libraries themselves need.
set(VXUT_PC_PRIVATE "-lstdc++ -lsupc++ -lcrypt ${CMAKE_THREAD_LIBS_INIT}")
string(STRIP "${VXUT_PC_PRIVATE}" VXUT_PC_PRIVATE)
set(VXUT_PC_PUBLIC "")
if(VXUT_LIBRARY_TYPE STREQUAL "STATIC")
    set(VXUT_PC_PUBLIC " ${VXUT_PC_PRIVATE}")
endif()
# The prefix is found from where the file lies, so that an installed tree can be moved.
file(RELATIVE_PATH VXUT_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" VXUT_PC_PREFIX ${VXUT_PC_PREFIX})
configure_file(cmake/VXut.pc.in ${PROJECT_BINARY_DIR}/VXut.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/VXut.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
