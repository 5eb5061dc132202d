# What belongs to the window layer besides its sources: the pictures, compiled in, and the modules for sound and print.
# The modules' libraries are large, so they are loaded at the first sound and the first printed page, from the folder of
# the program. Without a library its module is left out, and the program stays silent or says that it cannot print.
if(EXISTS ${CMAKE_SOURCE_DIR}/resources/pictures.qrc)
  qt_add_resources(pictureSources ${CMAKE_SOURCE_DIR}/resources/pictures.qrc OPTIONS --compress-algo none)
  target_sources(platform_desktop PRIVATE ${pictureSources})
  target_compile_definitions(platform_desktop PRIVATE JOTLET_PICTURES)
endif()

function(jotlet_module name source component)
  find_package(Qt6 QUIET COMPONENTS ${component})
  if(NOT TARGET Qt6::${component})
    message(STATUS "Qt6 ${component} not found: ${name} is left out")
    return()
  endif()
  add_library(${name} MODULE ${CMAKE_SOURCE_DIR}/${source})
  set_target_properties(${name} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  target_link_libraries(${name} PRIVATE Qt6::Core Qt6::Gui Qt6::Widgets Qt6::${component} jotlet_flags)
  add_dependencies(platform_desktop ${name})
endfunction()
jotlet_module(jotlet_print platform/desktop/print_plugin.cpp PrintSupport)
jotlet_module(jotlet_sound platform/desktop/sound_plugin.cpp Multimedia)
