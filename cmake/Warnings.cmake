# One set of flags for every target: every library and program links `quorvane_flags`.
add_library(quorvane_flags INTERFACE)
target_compile_features(quorvane_flags INTERFACE cxx_std_20)
target_include_directories(quorvane_flags INTERFACE ${PROJECT_SOURCE_DIR})

if(MSVC)
    target_compile_options(quorvane_flags INTERFACE /W4 /WX /permissive- /utf-8 /EHsc)
else()
    target_compile_options(
        quorvane_flags INTERFACE -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion -Wshadow
                                 -Wold-style-cast -Wcast-qual -Woverloaded-virtual -Wformat=2
                                 $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op>)
endif()

if(WIN32)
    target_compile_definitions(quorvane_flags INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN
                                                        _WIN32_WINNT=0x0601)
endif()

if(MINGW)
    # Everything is linked statically: a package or add-in must load on a machine that has no compiler.
    target_link_options(quorvane_flags INTERFACE -static)
    if(CMAKE_BUILD_TYPE STREQUAL "Release")
        target_link_options(quorvane_flags INTERFACE -s)
    endif()
endif()

if(QUORVANE_TRAPS)
    target_compile_options(quorvane_flags INTERFACE -fsanitize=undefined -fsanitize-undefined-trap-on-error)
    target_compile_definitions(quorvane_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()

if(QUORVANE_SANITIZE)
    target_compile_options(quorvane_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                    -fno-omit-frame-pointer)
    target_link_options(quorvane_flags INTERFACE -fsanitize=address,undefined)
    target_compile_definitions(quorvane_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()

if(QUORVANE_FUZZ)
    # clang only; the fuzzers' programs bring the run time and main().
    target_compile_options(quorvane_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(QUORVANE_COVERAGE)
    # What is counted is said where it is compiled.
    target_link_options(quorvane_flags INTERFACE --coverage)
endif()

# quorvane_library(NAME sources...): one folder, one static library. What it links is what it may include.
function(quorvane_library name)
    add_library(${name} STATIC ${ARGN})
    target_link_libraries(${name} PUBLIC quorvane_flags)
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()
