# How every target of the project is compiled.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor
                    -Wold-style-cast -Wconversion -Wno-sign-conversion
                    -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # An aggregate whose other fields have defaults is how calls with many arguments are written.
    add_compile_options(-Wno-missing-designated-field-initializers -Wno-unknown-warning-option)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 sees overlapping copies in `"text" + string` where there are none (its bug 105651).
    add_compile_options(-Wno-restrict)
endif()

if(TARNBECK_SANITIZE)
    # Without optimization a build takes half the time; only a fuzzer is worth more.
    add_compile_options(-fsanitize=${TARNBECK_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer -g1 $<IF:$<BOOL:${TARNBECK_BUILD_FUZZERS}>,-O1,-O0>)
    add_link_options(-fsanitize=${TARNBECK_SANITIZE})
    # A sanitized program is large; Clang's own linker takes a fraction of the time.
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND NOT APPLE)
        add_link_options(-fuse-ld=lld)
    endif()
endif()

# The builds that nobody works in compile several files as one, which takes less than half the time.
# There a name of one file may hide that of another.
if(CMAKE_UNITY_BUILD)
    add_compile_options(-Wno-shadow)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        ${CCACHE_PROGRAM})
endif()

if(APPLE)
    set(TARNBECK_SYSTEM macos)
else()
    set(TARNBECK_SYSTEM linux)
endif()

# One floor of the house: a static library whose headers are seen by exactly those who link it.
# `tarnbeck_floor(NAME name SOURCES … LINKS …)`
function(tarnbeck_floor)
    cmake_parse_arguments(FLOOR "" "NAME" "SOURCES;LINKS" ${ARGN})
    add_library(${FLOOR_NAME} STATIC ${FLOOR_SOURCES})
    target_include_directories(${FLOOR_NAME} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${FLOOR_NAME} PUBLIC ${FLOOR_LINKS})
endfunction()
