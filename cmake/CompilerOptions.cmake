# Options for the project's own targets, and the sanitizers for everything that is built, GoogleTest included.

if(VXUT_SANITIZE)
    add_compile_options(-fsanitize=${VXUT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VXUT_SANITIZE})
    # The standard library checks its preconditions too, such as an index against the size.
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
# Source paths are told relative to the source tree, in messages and in debug information; a compiler cache may have
# made them relative to the build tree first.
file(RELATIVE_PATH source_from_binary ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
                    -ffile-prefix-map=${source_from_binary}=)

# 32-bit ARM leaves functions that throw nothing out of the unwind tables, which would end a backtrace there.
add_compile_options(-funwind-tables)

# Clang checks that locks are taken before what they guard is used, and given back; see VXFW_THREADS.
set(VXUT_LOCKING_CHECKS -DVXUT_CHECK_THREADS -Wthread-safety -Werror=thread-safety)
function(vxut_check_locking target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        target_compile_options(${target} PRIVATE ${VXUT_LOCKING_CHECKS})
    endif()
endfunction()

function(vxut_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2
                                             $<$<BOOL:${VXUT_WERROR}>:-Werror>)
    # Large files on 32-bit platforms.
    target_compile_definitions(${target} PRIVATE _FILE_OFFSET_BITS=64)
endfunction()

# Hardening that not every platform has: for 32-bit ARM, GCC has no stack probes and no branch protection.
include(CheckCXXCompilerFlag)
set(VXUT_PLATFORM_HARDENING "")
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    foreach(option IN ITEMS -fstack-clash-protection -fcf-protection)
        string(MAKE_C_IDENTIFIER "VXUT_HAS${option}" has_option)
        check_cxx_compiler_flag(${option} ${has_option})
        if(${has_option})
            list(APPEND VXUT_PLATFORM_HARDENING ${option})
        endif()
    endforeach()
endif()

# Hardening of what is shipped: the two libraries and the console.
function(vxut_hardening target)
    target_compile_options(${target} PRIVATE -fstack-protector-strong ${VXUT_PLATFORM_HARDENING})
    target_link_options(${target} PRIVATE LINKER:-z,relro LINKER:-z,now)
    if(VXUT_SANITIZE)
        # A sanitizer defines what it intercepts, which would make the library behind it look unneeded.
        target_link_options(${target} PRIVATE LINKER:--no-as-needed)
    else()
        # Debian's compiler may define it already; without optimisation it only warns.
        target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3>)
        target_link_options(${target} PRIVATE LINKER:--as-needed)
    endif()
endfunction()

# Everything for one of the two libraries. Link options apply only to shared ones.
function(vxut_library_options target)
    vxut_warnings(${target})
    vxut_check_locking(${target})
    vxut_hardening(${target})
    # Thread records and signal handlers outlive a `dlclose`. That must not hang on whether some symbol is unique.
    target_link_options(${target} PRIVATE LINKER:-z,nodelete)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${target} PRIVATE -fno-gnu-unique)
    endif()
    # Calls inside a library go to its own operations directly, and may be inlined: nobody replaces them one by one.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    target_link_options(${target} PRIVATE LINKER:-Bsymbolic-functions)
    target_link_options(${target} PRIVATE LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/standard-library.map)
    # Clang links the sanitizers' run-time library into programs only.
    if(NOT (VXUT_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
        target_link_options(${target} PRIVATE LINKER:-z,defs)
    endif()
    if(VXUT_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)
        target_link_options(${target} PRIVATE --coverage)
    endif()
    if(VXUT_LIBRARY_TYPE STREQUAL "STATIC")
        # A client linked with --gc-sections contains only what it uses.
        target_compile_options(${target} PRIVATE -ffunction-sections -fdata-sections)
    endif()
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        # Inline members of exported classes stay visible: some are part of what a library offers.
        CXX_VISIBILITY_PRESET hidden
        INSTALL_RPATH "$ORIGIN"
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}
        ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}
        # Both are in one folder in the build tree too; a second path would leave an empty entry, the current directory.
        BUILD_WITH_INSTALL_RPATH ON)
endfunction()
