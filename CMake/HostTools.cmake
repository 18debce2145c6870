# Programs of ours that make sources for a build run on the building machine, so only the plain native build makes them.
# The Windows and the sanitizer builds take them from there: configured here when that was not done, and built first.
set(TARV_HOST_BINARY_DIR ${CMAKE_SOURCE_DIR}/build/native)
set(TARV_HOST_TOOLS DefinitionCompiler FactoryCompiler GfxBuilder ResourcePacker)

if(WIN32 OR TARV_SANITIZER)
    if(NOT EXISTS ${TARV_HOST_BINARY_DIR}/build.ninja)
        execute_process(COMMAND ${CMAKE_COMMAND} --preset native WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
                        COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
    endif()
    set(tool_files "")
    set(tool_targets "")
    foreach(tool ${TARV_HOST_TOOLS})
        if(EXISTS ${CMAKE_SOURCE_DIR}/Tools/${tool}/CMakeLists.txt)
            list(APPEND tool_files ${TARV_HOST_BINARY_DIR}/Tools/${tool}/${tool})
            list(APPEND tool_targets ${tool})
        endif()
    endforeach()
    if(tool_targets)
        add_custom_target(HostTools
            COMMAND ${CMAKE_COMMAND} --build ${TARV_HOST_BINARY_DIR} --target ${tool_targets}
            BYPRODUCTS ${tool_files} USES_TERMINAL COMMENT "Bringing the build tools up to date")
    endif()
endif()

# tarv_host_tool(name path depends): the program to call in a custom command, and what the command depends on.
function(tarv_host_tool name path depends)
    if(WIN32 OR TARV_SANITIZER)
        set(${path} ${TARV_HOST_BINARY_DIR}/Tools/${name}/${name} PARENT_SCOPE)
        set(${depends} HostTools ${TARV_HOST_BINARY_DIR}/Tools/${name}/${name} PARENT_SCOPE)
    else()
        set(${path} $<TARGET_FILE:${name}> PARENT_SCOPE)
        set(${depends} ${name} PARENT_SCOPE)
    endif()
endfunction()
