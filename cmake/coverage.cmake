# The target `coverage`: builds and runs the tests, then writes coverage/index.html and one line a folder to the terminal.
find_program(JOTLET_GCOVR gcovr REQUIRED)
get_property(testPrograms DIRECTORY tests PROPERTY BUILDSYSTEM_TARGETS)
add_custom_target(
  coverage
  COMMAND ${CMAKE_CTEST_COMMAND} -j2 --output-on-failure
  COMMAND ${CMAKE_COMMAND} -E make_directory coverage
  COMMAND ${JOTLET_GCOVR} -r ${CMAKE_SOURCE_DIR} -e tests/ -e bench/ --html-details coverage/index.html --print-summary .
  DEPENDS ${testPrograms}
  WORKING_DIRECTORY ${CMAKE_BINARY_DIR} VERBATIM USES_TERMINAL)
