# The data sets that Tools/GfxBuilder makes of the sources in Gfx, below TARV_RESOURCE_DIR under their names in the table
# of resources: Gfx/<folder>/<name>.<extension>. Gives their paths in TARV_GRAPHICS_FILES.
tarv_host_tool(GfxBuilder gfx_builder gfx_builder_depends)
set(TARV_GRAPHICS_FILES "")

# tarv_graphics(folder source-extension extension): the builder takes the kind of a source from the extension.
function(tarv_graphics folder source_extension extension)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/Gfx/${folder}/*.${source_extension})
    file(MAKE_DIRECTORY ${TARV_RESOURCE_DIR}/Gfx/${folder})
    set(files ${TARV_GRAPHICS_FILES})
    foreach(source ${sources})
        get_filename_component(name ${source} NAME_WE)
        set(file ${TARV_RESOURCE_DIR}/Gfx/${folder}/${name}.${extension})
        add_custom_command(OUTPUT ${file} COMMAND ${gfx_builder} ${source} ${file}
            DEPENDS ${source} ${ARGN} ${gfx_builder_depends} VERBATIM COMMENT "Drawing ${folder}/${name}.${extension}")
        list(APPEND files ${file})
    endforeach()
    set(TARV_GRAPHICS_FILES ${files} PARENT_SCOPE)
endfunction()

tarv_graphics(Imagesets svg is)
tarv_graphics(Fonts font fnt)
tarv_graphics(Brushes brush bs)
# Palettes read one another, for their icons.
file(GLOB palettes CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/Gfx/Palettes/*.palette)
tarv_graphics(Palettes palette pal ${CMAKE_SOURCE_DIR}/Gfx/Palettes/rules.txt ${palettes})
add_custom_target(Graphics DEPENDS ${TARV_GRAPHICS_FILES})
