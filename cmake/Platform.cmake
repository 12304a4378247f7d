# What the libraries use of the platform, and what clients have to have in common with them.
include(CheckCXXSymbolExists)
include(CheckTypeSize)
find_package(Threads REQUIRED)
find_library(VXUT_CRYPT_LIBRARY crypt)
mark_as_advanced(VXUT_CRYPT_LIBRARY)
if(NOT VXUT_CRYPT_LIBRARY)
    message(FATAL_ERROR "libcrypt is not installed: install the package libcrypt-dev.")
endif()

set(CMAKE_EXTRA_INCLUDE_FILES time.h)
check_type_size(time_t VXUT_TIME_SIZE LANGUAGE CXX)
unset(CMAKE_EXTRA_INCLUDE_FILES)
math(EXPR VXUT_TIME_BITS "8 * ${VXUT_TIME_SIZE}")
set(VXUT_TIME_FLAGS "-D_TIME_BITS=${VXUT_TIME_BITS}")
if(VXUT_TIME_BITS EQUAL 64)
    # The platform allows the one only with the other.
    string(APPEND VXUT_TIME_FLAGS " -D_FILE_OFFSET_BITS=64")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/ut_Platform.h.in ${PROJECT_BINARY_DIR}/generated/ut_Platform.h @ONLY)

# 32-bit ARM leaves functions that throw nothing out of the unwind tables: a crash report would end at the first of them.
check_cxx_symbol_exists(__arm__ cstddef VXUT_ARM)
set(VXUT_CLIENT_OPTIONS "")
if(VXUT_ARM)
    set(VXUT_CLIENT_OPTIONS -funwind-tables)
endif()
