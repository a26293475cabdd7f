# What every DLL and program that users get has besides its code: a version resource, and a list of what was linked into it.

# version_info.rc has the project's version, and the licence that LICENSE begins with.
file(STRINGS ${PROJECT_SOURCE_DIR}/LICENSE QUORVANE_COPYRIGHT REGEX "^Copyright " LIMIT_COUNT 1)
file(STRINGS ${PROJECT_SOURCE_DIR}/LICENSE QUORVANE_LICENCE REGEX " License$" LIMIT_COUNT 1)
set(QUORVANE_VERSION_INFO ${PROJECT_BINARY_DIR}/version_info/version_info.rc)
configure_file(${PROJECT_SOURCE_DIR}/cmake/version_info.rc.in ${QUORVANE_VERSION_INFO} @ONLY)

# The linker's maps tell script/package whose code the binaries contain.
set(QUORVANE_LINK_MAPS ${PROJECT_BINARY_DIR}/link_maps)
file(MAKE_DIRECTORY ${QUORVANE_LINK_MAPS})

# quorvane_shipped(TARGET file.rc [DEPENDS files...]): the resource script includes <version_info.rc>. The resource compiler
# does not tell what it included: the script is compiled again when one of the files changes.
function(quorvane_shipped target script)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "DEPENDS")
    set_source_files_properties(
        ${script} PROPERTIES OBJECT_DEPENDS "${QUORVANE_VERSION_INFO};${arg_DEPENDS}"
                             INCLUDE_DIRECTORIES ${PROJECT_BINARY_DIR}/version_info)
    target_sources(${target} PRIVATE ${script})
    if(MINGW)
        # Without the time of linking, the same sources give the same binaries.
        target_link_options(${target} PRIVATE -Wl,-Map,${QUORVANE_LINK_MAPS}/${target}.map -Wl,--no-insert-timestamp)
    endif()
endfunction()
