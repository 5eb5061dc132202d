# jotlet_library(folder LINKS folder... PRIVATE_LINKS target... PRIVATE_INCLUDES directory...)
#   One static library of the .cpp files that lie directly in `folder` (not in folders below it). Its target is named after
#   the folder, with "/" as "_". A folder without sources gives an interface library, so that the list of layers can stand
#   before all of them are filled.
function(jotlet_library folder)
  cmake_parse_arguments(arg "" "" "LINKS;PRIVATE_LINKS;PRIVATE_INCLUDES" ${ARGN})
  string(REPLACE "/" "_" target ${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
  if(folder STREQUAL "resources")
    file(GLOB dialogs CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/dialogs/*.cpp)
    list(APPEND sources ${dialogs})
  endif()
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$|_plugin\\.cpp$")
  set(below "")
  foreach(link IN LISTS arg_LINKS)
    string(REPLACE "/" "_" name ${link})
    list(APPEND below ${name})
  endforeach()
  if(sources)
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${target} PUBLIC ${below} jotlet_flags PRIVATE ${arg_PRIVATE_LINKS})
    target_include_directories(${target} PRIVATE ${arg_PRIVATE_INCLUDES})
    # What has no window is worked hard by its tests; windows and the tests themselves compile faster without.
    if(JOTLET_SANITIZE AND NOT "platform_desktop" IN_LIST below AND NOT "toolkit" IN_LIST below AND
       NOT target STREQUAL "platform_desktop")
      target_compile_options(${target} PRIVATE -O1)
    endif()
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${target} INTERFACE ${below} jotlet_flags)
  endif()
  jotlet_headers_alone(${target} ${folder} LINKS ${below} ${arg_PRIVATE_LINKS} INCLUDES ${arg_PRIVATE_INCLUDES})
endfunction()

# Lets the target `headers` (no part of a normal build) compile each header of a box by itself, with what the box links and
# nothing more: a header that needs another one to stand before it, or one from above, does not compile.
add_custom_target(headers)
function(jotlet_headers_alone target folder)
  cmake_parse_arguments(arg "" "" "LINKS;INCLUDES" ${ARGN})
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/${folder}/*.h)
  set(sources "")
  foreach(header IN LISTS headers)
    set(source ${CMAKE_BINARY_DIR}/headers/${header}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "#include \"${header}\"\n#include \"${header}\"\n")
    list(APPEND sources ${source})
  endforeach()
  if(sources)
    add_library(${target}_headers OBJECT EXCLUDE_FROM_ALL ${sources})
    target_include_directories(${target}_headers PRIVATE ${CMAKE_SOURCE_DIR} ${arg_INCLUDES})
    target_link_libraries(${target}_headers PRIVATE ${arg_LINKS} jotlet_flags)
    add_dependencies(headers ${target}_headers)
  endif()
endfunction()

# Flags that every target shares.
add_library(jotlet_flags INTERFACE)
if(JOTLET_SANITIZE)
  target_compile_options(jotlet_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                -fno-omit-frame-pointer -D_GLIBCXX_ASSERTIONS)
  target_link_options(jotlet_flags INTERFACE -fsanitize=address,undefined)
endif()
if(JOTLET_FUZZ)
  target_compile_options(jotlet_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                -fno-sanitize-recover=undefined -O1)
  target_link_options(jotlet_flags INTERFACE -fsanitize=address,undefined)
endif()

# lld links the sanitized programs several times as fast as the default linker.
find_program(JOTLET_LLD ld.lld)
if(JOTLET_LLD)
  target_link_options(jotlet_flags INTERFACE -fuse-ld=lld)
endif()
