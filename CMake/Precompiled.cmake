# Headers of the standard library are parsed once for each set of flags: TarvPrecompiled for the product and its tools,
# TarvTestPrecompiled (in Tests) for the tests. Headers of the project stay out, so that a change of one of them
# compiles only what includes it; that each of them includes what it needs is checked by the target HeadersAlone.
set(TARV_STANDARD_HEADERS <algorithm> <atomic> <cmath> <cstdint> <cstring> <functional> <map> <memory> <string>
    <utility> <vector>)

# tarv_precompiled_headers(name headers...): an object library that only makes the headers' compiled form.
function(tarv_precompiled_headers name)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "// Makes the precompiled headers of ${name}.\n")
    add_library(${name} OBJECT ${source})
    target_link_libraries(${name} PRIVATE TarvFlags)
    target_precompile_headers(${name} PRIVATE ${ARGN})
    if(TARV_CCACHE)
        # What the cache needs to follow precompiled headers, by compiler.
        target_compile_options(${name} INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
        if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
            target_compile_options(${name} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
        endif()
    endif()
endfunction()

# tarv_use_precompiled(name from): compiles the sources of a target with them.
function(tarv_use_precompiled name from)
    target_precompile_headers(${name} REUSE_FROM ${from})
    if(TARV_CCACHE AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_compile_options(${name} PRIVATE -fpch-preprocess)
    endif()
endfunction()
