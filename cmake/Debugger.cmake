# The printers and commands for gdb. gdb loads a file named after the library by itself: from its auto-load folder, which
# repeats the path of the library, or from the library's own folder.
set(gdb_autoload_name "$<TARGET_FILE_NAME:VXut>-gdb.py")
get_target_property(library_type VXut TYPE)

if(VXUT_INSTALL)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/gdb/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vxut/gdb COMPONENT debugger
            PATTERN __pycache__ EXCLUDE PATTERN autoload.py EXCLUDE)
endif()
if(library_type STREQUAL "SHARED_LIBRARY")
    if(VXUT_INSTALL)
        # The prefix is known only when it is installed.
        install(FILES ${PROJECT_SOURCE_DIR}/gdb/autoload.py RENAME ${gdb_autoload_name} COMPONENT debugger
                DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load/\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}")
    endif()
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/${gdb_autoload_name}
         CONTENT "import runpy\nrunpy.run_path('${PROJECT_SOURCE_DIR}/gdb/load.py')\n")
endif()
