# cmake -D FROM=... -D TO=... -P copy_beside.cmake
# What ships goes beside the program. A settings file that is there stays: it may be in use.
file(COPY ${FROM}/ DESTINATION ${TO} PATTERN Pinwell.ini EXCLUDE)
if(NOT EXISTS ${TO}/Pinwell.ini)
  file(COPY ${FROM}/Pinwell.ini DESTINATION ${TO})
endif()
