# With ccache installed, a second clone on the same machine takes over what another one compiled. Paths inside the
# project are made relative to the build folder for that; a second prefix map gives __FILE__ its form "Sources/..."
# from these, too.
file(RELATIVE_PATH TARV_RELATIVE_TOP ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR})
find_program(TARV_CCACHE ccache)
if(TARV_CCACHE)
    set(launcher ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1 CCACHE_INODECACHE=1
        CCACHE_SLOPPINESS=pch_defines,time_macros ${TARV_CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()
