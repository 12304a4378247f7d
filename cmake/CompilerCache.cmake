# Compiles through ccache where it is installed. The sloppiness lets it cache what uses a precompiled header.
find_program(VXUT_CCACHE ccache)
mark_as_advanced(VXUT_CCACHE)
if(VXUT_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
                                    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${VXUT_CCACHE})
endif()
