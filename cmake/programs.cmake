# The programs, and the folder in which they find what they need: bin/ holds the executables with skins, help pages,
# sounds and the ini file beside them, as an installed copy would.
if(EXISTS ${CMAKE_SOURCE_DIR}/cli/main.cpp AND NOT JOTLET_FUZZ)
  file(GLOB cliSources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/cli/*.cpp)
  add_executable(jotctl ${cliSources})
  target_link_libraries(jotctl PRIVATE interchange_engine notes_commands)
endif()
if(JOTLET_DESKTOP AND EXISTS ${CMAKE_SOURCE_DIR}/core/main.cpp)
  add_executable(jotlet ${CMAKE_SOURCE_DIR}/core/main.cpp)
  target_link_libraries(jotlet PRIVATE core)
endif()

# Copies what stands in resources/beside to bin/ (Styles/, Help/, *.wav, Pinwell.ini).
if(EXISTS ${CMAKE_SOURCE_DIR}/resources/beside)
  add_custom_target(
    beside ALL COMMAND ${CMAKE_COMMAND} -D FROM=${CMAKE_SOURCE_DIR}/resources/beside -D TO=${CMAKE_BINARY_DIR}/bin -P
                       ${CMAKE_SOURCE_DIR}/cmake/copy_beside.cmake VERBATIM)
endif()
