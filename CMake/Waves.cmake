# Waves in each set of instructions. A file of a wider set may hold nothing that other files share: the linker keeps one
# copy of an inline function, and it would be that of the wider set. Without the header of the standard library that
# all others begin with.
set(TARV_WAVE_FOLDER ${CMAKE_SOURCE_DIR}/Sources/Audio/Kernels/Wave)
if(WIN32)
    # They follow the calling convention of System V (WaveSets.h), but what lies below the stack pointer is nobody's here.
    set(TARV_WAVE_STACK -mno-red-zone)
    set_source_files_properties(${TARV_WAVE_FOLDER}/WaveSse2.cpp PROPERTIES COMPILE_OPTIONS ${TARV_WAVE_STACK}
        SKIP_PRECOMPILE_HEADERS ON)
endif()
# What GCC knows of a function of the same file keeps it from clearing the upper halves before a jump to it.
set(TARV_WAVE_CLEAN $<$<CXX_COMPILER_ID:GNU>:-fno-ipa-ra>)
set_source_files_properties(${TARV_WAVE_FOLDER}/WaveAvx2.cpp PROPERTIES COMPILE_OPTIONS "-mavx2;${TARV_WAVE_STACK};${TARV_WAVE_CLEAN}"
    SKIP_PRECOMPILE_HEADERS ON)
# The compiler's own header warns of what it leaves undefined on purpose.
set_source_files_properties(${TARV_WAVE_FOLDER}/WaveAvx512.cpp PROPERTIES
    COMPILE_OPTIONS "-mavx512f;-mavx512dq;${TARV_WAVE_STACK};${TARV_WAVE_CLEAN};-Wno-uninitialized;$<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>"
    SKIP_PRECOMPILE_HEADERS ON)
