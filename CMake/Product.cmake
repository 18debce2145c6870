# The compiled definitions, the table that embeds them, and the library itself.
set(TARV_RESOURCE_DIR ${CMAKE_BINARY_DIR}/resources)
file(MAKE_DIRECTORY ${TARV_RESOURCE_DIR})
set(definitions ${CMAKE_SOURCE_DIR}/Definitions)
tarv_host_tool(DefinitionCompiler definition_compiler definition_compiler_depends)
tarv_host_tool(FactoryCompiler factory_compiler factory_compiler_depends)
tarv_host_tool(ResourcePacker resource_packer resource_packer_depends)

# tarv_compile_tree(output source args...): an object tree; what it includes is found by the compiler.
function(tarv_compile_tree output source)
    set(file ${TARV_RESOURCE_DIR}/${output})
    add_custom_command(OUTPUT ${file}
        COMMAND ${definition_compiler} ${source} ${file} --depfile ${file}.d ${ARGN}
        DEPENDS ${source} ${definition_compiler_depends} DEPFILE ${file}.d VERBATIM COMMENT "Compiling ${output}")
endfunction()

function(tarv_compile_factory output source)
    set(file ${TARV_RESOURCE_DIR}/${output})
    add_custom_command(OUTPUT ${file} COMMAND ${factory_compiler} ${source} ${file}
        DEPENDS ${source} ${factory_compiler_depends} VERBATIM COMMENT "Compiling ${output}")
endfunction()

tarv_compile_tree(SharedData.xml ${definitions}/SharedData/SharedData.xml)
tarv_compile_tree(UserInterface.xml ${definitions}/UserInterface/UserInterface.xml
    --templates ${definitions}/SharedData/SharedData.xml)
tarv_compile_factory(FactoryROM.cbf ${definitions}/Factory/FactoryROM.xml)
tarv_compile_factory(AppDataGlobal_routing-presets ${definitions}/Factory/RoutingPresets.xml)

# The editor of the library that host tests open, in a product that says that it has one.
file(MAKE_DIRECTORY ${TARV_RESOURCE_DIR}/Demonstration)
tarv_compile_tree(Demonstration/SharedData.xml ${definitions}/SharedData/SharedData.xml --set project.has-editor=true)
tarv_compile_tree(Demonstration/UserInterface.xml ${definitions}/Demonstration/HostedEditor.xml
    --templates ${definitions}/SharedData/SharedData.xml)
# The same table with these two.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${definitions}/Resources.xml)
file(READ ${definitions}/Resources.xml demonstration_table)
string(REGEX REPLACE "file=\"(SharedData|UserInterface)[.]xml\"" "file=\"Demonstration/\\1.xml\"" demonstration_table
    "${demonstration_table}")
file(CONFIGURE OUTPUT ${TARV_RESOURCE_DIR}/Demonstration/Resources.xml CONTENT "${demonstration_table}" @ONLY)

# For tests and tools: compiled and not embedded.
tarv_compile_tree(Demonstration.xml ${definitions}/Demonstration/Demonstration.xml
    --templates ${definitions}/SharedData/SharedData.xml)
add_custom_target(Demonstration DEPENDS ${TARV_RESOURCE_DIR}/Demonstration.xml)

include(CMake/Graphics.cmake)

# tarv_resources(name table folder files...): an object library of what a table names; its sources go to the folder.
function(tarv_resources name table folder)
    set(files SharedData.xml UserInterface.xml)
    list(TRANSFORM files PREPEND ${folder}/)
    list(APPEND files ${TARV_RESOURCE_DIR}/FactoryROM.cbf ${TARV_RESOURCE_DIR}/AppDataGlobal_routing-presets)
    set(sources ${folder}/Resources.S ${folder}/ResourceRows.cpp)
    add_custom_command(OUTPUT ${sources}
        COMMAND ${resource_packer} ${table} ${TARV_RESOURCE_DIR} ${sources}
        DEPENDS ${table} ${files} ${TARV_GRAPHICS_FILES} ${resource_packer_depends} VERBATIM
        COMMENT "Packing resources of ${name}")
    add_library(${name} OBJECT ${sources})
    target_link_libraries(${name} PUBLIC TarvFlags)
endfunction()
tarv_resources(TarvResources ${definitions}/Resources.xml ${TARV_RESOURCE_DIR})
tarv_resources(TarvDemonstrationResources ${TARV_RESOURCE_DIR}/Demonstration/Resources.xml
    ${TARV_RESOURCE_DIR}/Demonstration)

# tarv_plugin(name layers...): a library that hosts load.
function(tarv_plugin name)
    add_library(${name} MODULE)
    target_link_libraries(${name} PRIVATE ${ARGN})
    set_target_properties(${name} PROPERTIES PREFIX "" LINKER_LANGUAGE CXX
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR} RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    if(WIN32)
        target_sources(${name} PRIVATE Sources/Product/BrindleXEQ.def)
    else()
        set(export_map ${CMAKE_SOURCE_DIR}/Sources/Product/BrindleXEQ.map)
        target_link_options(${name} PRIVATE -Wl,--version-script=${export_map} -Wl,--defsym=main=VSTPluginMain)
        set_target_properties(${name} PROPERTIES LINK_DEPENDS ${export_map})
        if(NOT TARV_SANITIZER)
            # A sanitizer's runtime is in the program that loads the library; all else must be here.
            target_link_options(${name} PRIVATE -Wl,-z,defs)
        endif()
    endif()
endfunction()
tarv_plugin(BrindleXEQ ${TARV_CODE_LAYERS} TarvResources)
if(WIN32)
    enable_language(RC)
    target_sources(BrindleXEQ PRIVATE Sources/Product/Version.rc)
endif()
tarv_plugin(HostedEditor ${TARV_CODE_LAYERS} TarvDemonstrationResources)
# What is shipped goes with the licences of what is in it.
file(GLOB licences CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/Docs/licences/*.txt)
foreach(licence ${licences})
    get_filename_component(name ${licence} NAME)
    configure_file(${licence} ${CMAKE_BINARY_DIR}/licences/${name} COPYONLY)
endforeach()
# What a crash report needs stays here; what is shipped is without it. The date goes into the header that objcopy writes:
# a fixed one, so that the same sources give the same bytes.
# The stereo face is the same file under another name, by which the library knows what to show (CPluginFace.h).
set(copy_object ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${CMAKE_OBJCOPY})
set(stereo_file BrindleXEQ-Stereo${CMAKE_SHARED_MODULE_SUFFIX})
add_custom_command(TARGET BrindleXEQ POST_BUILD WORKING_DIRECTORY ${CMAKE_BINARY_DIR} VERBATIM
    BYPRODUCTS ${CMAKE_BINARY_DIR}/${stereo_file}
    COMMAND ${copy_object} --only-keep-debug $<TARGET_FILE_NAME:BrindleXEQ> $<TARGET_FILE_NAME:BrindleXEQ>.debug
    COMMAND ${copy_object} --strip-unneeded --add-gnu-debuglink=$<TARGET_FILE_NAME:BrindleXEQ>.debug
            $<TARGET_FILE_NAME:BrindleXEQ>
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE_NAME:BrindleXEQ> ${stereo_file})
