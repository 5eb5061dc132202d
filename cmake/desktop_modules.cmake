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

# The title bars use inner interfaces of Qt, for which Debian 12 has no headers: the module declares what it needs of them
# itself and is right for that one version only. With another one, or where Qt's Wayland library is not installed, Qt draws
# its own title bars.
find_library(JOTLET_QT_WAYLAND_CLIENT NAMES libQt6WaylandClient.so.6)
set(qtWaylandClient "")
if(JOTLET_QT_WAYLAND_CLIENT)
  file(REAL_PATH ${JOTLET_QT_WAYLAND_CLIENT} qtWaylandClient)
endif()
if(qtWaylandClient MATCHES "\\.so\\.6\\.4\\.2$" AND Qt6_VERSION VERSION_EQUAL 6.4.2)
  add_library(jotlet_decoration MODULE ${CMAKE_SOURCE_DIR}/platform/desktop/decoration_plugin.cpp)
  set_target_properties(jotlet_decoration PROPERTIES PREFIX "" AUTOMOC ON LIBRARY_OUTPUT_DIRECTORY
                                                     ${CMAKE_BINARY_DIR}/bin/wayland-decoration-client)
  target_include_directories(jotlet_decoration PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(jotlet_decoration PRIVATE Qt6::Core Qt6::Gui ${qtWaylandClient} jotlet_flags)
  add_dependencies(platform_desktop jotlet_decoration)
else()
  message(STATUS "Qt's Wayland library 6.4.2 not found: jotlet_decoration is left out")
  file(REMOVE ${CMAKE_BINARY_DIR}/bin/wayland-decoration-client/jotlet_decoration.so)  # built before another Qt came
endif()
