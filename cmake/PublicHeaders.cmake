# The public headers of a library: every file set of its target but `internal`. The sets are private to the target: as
# public ones they would put the folder of the headers itself on the search path of clients, who write <VXut/name.h>.

# Sets the variable `result` to the paths of the public headers of `target`.
function(vxut_public_headers target result)
    set(headers "")
    get_target_property(sets ${target} HEADER_SETS)
    list(REMOVE_ITEM sets internal)
    foreach(set IN LISTS sets)
        get_target_property(files ${target} HEADER_SET_${set})
        list(APPEND headers ${files})
    endforeach()
    set(${result} ${headers} PARENT_SCOPE)
endfunction()

# Links the public headers of `target` into a folder VXut of the build tree.
function(vxut_link_headers target)
    vxut_public_headers(${target} headers)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/include/VXut)
    foreach(header IN LISTS headers)
        cmake_path(GET header FILENAME name)
        file(CREATE_LINK ${header} ${PROJECT_BINARY_DIR}/include/VXut/${name} SYMBOLIC)
    endforeach()
endfunction()
