# Compiles an interface description into a header and a type library, both named after it, in the caller's
# binary folder: the description is the one source of interface identifiers, slots and member identifiers.
#
#   quorvane_idl(TARGET name.idl [INCLUDES folders...] [DEPENDS files...])
#
# defines the interface library TARGET (include <name_idl.h>) and the variable TARGET_TLB (path of name.tlb). The target
# interface_headers makes all of them, for tools that only read the sources.
if(MSVC)
    find_program(IDL_COMPILER midl REQUIRED)
else()
    find_program(IDL_COMPILER x86_64-w64-mingw32-widl REQUIRED)
    # widl needs the platform's own descriptions (oaidl.idl) and the standard type library (stdole2.tlb);
    # Debian ships both with Wine only.
    find_path(PLATFORM_IDL oaidl.idl PATH_SUFFIXES wine/wine/windows wine/windows wine-development/windows
              PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    find_path(PLATFORM_TLB stdole2.tlb PATH_SUFFIXES x86_64-windows
              PATHS /usr/lib/x86_64-linux-gnu/wine /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH REQUIRED)
endif()

add_custom_target(interface_headers)

function(quorvane_idl target idl)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "INCLUDES;DEPENDS")
    get_filename_component(stem ${idl} NAME_WE)
    set(source ${CMAKE_CURRENT_SOURCE_DIR}/${idl})
    set(header ${CMAKE_CURRENT_BINARY_DIR}/${stem}_idl.h)
    set(tlb ${CMAKE_CURRENT_BINARY_DIR}/${stem}.tlb)
    set(includes)
    foreach(folder IN LISTS arg_INCLUDES)
        list(APPEND includes -I ${folder})
    endforeach()
    if(MSVC)
        add_custom_command(
            OUTPUT ${header} ${tlb}
            COMMAND ${IDL_COMPILER} /nologo /env x64 /h ${header} /tlb ${tlb} ${includes} ${source}
            DEPENDS ${source} ${arg_DEPENDS} VERBATIM)
    else()
        add_custom_command(
            OUTPUT ${header} ${tlb}
            COMMAND ${IDL_COMPILER} -m64 -h -o ${header} -I ${PLATFORM_IDL} ${includes} ${source}
            COMMAND ${IDL_COMPILER} -m64 -t -o ${tlb} -I ${PLATFORM_IDL} -L ${PLATFORM_TLB} ${includes} ${source}
            DEPENDS ${source} ${arg_DEPENDS} VERBATIM)
    endif()
    add_custom_target(${target}_files DEPENDS ${header} ${tlb})
    add_dependencies(interface_headers ${target}_files)
    add_library(${target} INTERFACE)
    add_dependencies(${target} ${target}_files)
    target_include_directories(${target} SYSTEM INTERFACE ${CMAKE_CURRENT_BINARY_DIR})
    set(${target}_TLB ${tlb} PARENT_SCOPE)
endfunction()
