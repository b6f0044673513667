# Runs a program and keeps what it prints in a file, in English whatever the
# builder's language: cmake -DOUTPUT=file -P RunToFile.cmake -- program args...
# The file is replaced only when the program succeeds.

set(command "")
set(after_separator FALSE)
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(i RANGE ${last})
  if(after_separator)
    list(APPEND command "${CMAKE_ARGV${i}}")
  elseif(CMAKE_ARGV${i} STREQUAL "--")
    set(after_separator TRUE)
  endif()
endforeach()
if(NOT OUTPUT OR NOT command)
  message(FATAL_ERROR "usage: cmake -DOUTPUT=file -P RunToFile.cmake -- program args...")
endif()

set(ENV{LC_ALL} C.UTF-8)
set(ENV{LANG} C.UTF-8)
unset(ENV{LANGUAGE})
get_filename_component(folder ${OUTPUT} DIRECTORY)
file(MAKE_DIRECTORY ${folder})
execute_process(COMMAND ${command} OUTPUT_FILE ${OUTPUT}.part RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  file(REMOVE ${OUTPUT}.part)
  message(FATAL_ERROR "${command} failed: ${status}")
endif()
file(RENAME ${OUTPUT}.part ${OUTPUT})
