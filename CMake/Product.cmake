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

set(resource_files SharedData.xml UserInterface.xml FactoryROM.cbf AppDataGlobal_routing-presets)
list(TRANSFORM resource_files PREPEND ${TARV_RESOURCE_DIR}/)
include(CMake/Graphics.cmake)
set(resource_sources ${TARV_RESOURCE_DIR}/Resources.S ${TARV_RESOURCE_DIR}/ResourceRows.cpp)
add_custom_command(OUTPUT ${resource_sources}
    COMMAND ${resource_packer} ${definitions}/Resources.xml ${TARV_RESOURCE_DIR} ${resource_sources}
    DEPENDS ${definitions}/Resources.xml ${resource_files} ${TARV_GRAPHICS_FILES} ${resource_packer_depends} VERBATIM
    COMMENT "Packing resources")
target_sources(TarvProduct PRIVATE ${resource_sources})

add_library(BrindleXEQ MODULE)
target_link_libraries(BrindleXEQ PRIVATE ${TARV_ALL_LAYERS})
set_target_properties(BrindleXEQ PROPERTIES PREFIX "" LINKER_LANGUAGE CXX
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR} RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
if(WIN32)
    enable_language(RC)
    target_sources(BrindleXEQ PRIVATE Sources/Product/BrindleXEQ.def Sources/Product/Version.rc)
else()
    set(export_map ${CMAKE_SOURCE_DIR}/Sources/Product/BrindleXEQ.map)
    target_link_options(BrindleXEQ PRIVATE -Wl,--version-script=${export_map} -Wl,--defsym=main=VSTPluginMain)
    set_target_properties(BrindleXEQ PROPERTIES LINK_DEPENDS ${export_map})
    if(NOT TARV_SANITIZER)
        # A sanitizer's runtime is in the program that loads the library; all else must be here.
        target_link_options(BrindleXEQ PRIVATE -Wl,-z,defs)
    endif()
endif()
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
