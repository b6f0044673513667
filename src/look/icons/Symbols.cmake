# Installs the icon package from the npm registry into the build tree (once per
# lock file), copies the SVGs that symbols.txt maps under their symbol names
# and puts them into the sorvel_ui resources at :/sorvel/symbols/.
set(_icons_source ${CMAKE_CURRENT_LIST_DIR})
set(_icons_npm ${CMAKE_BINARY_DIR}/npm-icons)
set(_icons_out ${CMAKE_CURRENT_BINARY_DIR}/symbols)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  ${_icons_source}/symbols.txt ${_icons_source}/package.json ${_icons_source}/package-lock.json)

file(SHA256 ${_icons_source}/package-lock.json _icons_lock_hash)
set(_icons_stamp ${_icons_npm}/installed.stamp)
set(_icons_installed "")
if(EXISTS ${_icons_stamp})
  file(READ ${_icons_stamp} _icons_installed)
endif()
if(NOT _icons_installed STREQUAL _icons_lock_hash)
  find_program(NPM_EXECUTABLE npm REQUIRED)
  file(MAKE_DIRECTORY ${_icons_npm})
  file(COPY ${_icons_source}/package.json ${_icons_source}/package-lock.json DESTINATION ${_icons_npm})
  message(STATUS "Installing the icon package from npm")
  execute_process(
    COMMAND ${NPM_EXECUTABLE} ci --no-audit --no-fund --ignore-scripts --loglevel=error
    WORKING_DIRECTORY ${_icons_npm}
    RESULT_VARIABLE _icons_result
    OUTPUT_VARIABLE _icons_output
    ERROR_VARIABLE _icons_output)
  if(NOT _icons_result EQUAL 0)
    message(FATAL_ERROR "npm ci of the icon package failed:\n${_icons_output}")
  endif()
  file(WRITE ${_icons_stamp} ${_icons_lock_hash})
endif()

set(_icons_lucide ${_icons_npm}/node_modules/lucide-static/icons)
file(STRINGS ${_icons_source}/symbols.txt _icons_lines)
set(_icons_files "")
foreach(_line IN LISTS _icons_lines)
  if(_line MATCHES "^#" OR _line MATCHES "^[ \t]*$")
    continue()
  endif()
  if(NOT _line MATCHES "^([^ \t]+)[ \t]+([^ \t]+)[ \t]*$")
    message(FATAL_ERROR "symbols.txt: cannot read the line '${_line}'")
  endif()
  set(_name ${CMAKE_MATCH_1})
  set(_file ${_icons_lucide}/${CMAKE_MATCH_2}.svg)
  if(NOT EXISTS ${_file})
    message(FATAL_ERROR "symbols.txt: ${_name} names ${CMAKE_MATCH_2}, which the icon package does not have")
  endif()
  configure_file(${_file} ${_icons_out}/${_name}.svg COPYONLY)
  list(APPEND _icons_files ${_icons_out}/${_name}.svg)
endforeach()
configure_file(${_icons_npm}/node_modules/lucide-static/LICENSE ${_icons_out}/LICENSE.lucide COPYONLY)

qt_add_resources(sorvel_ui "sorvel_symbols"
  PREFIX "/sorvel/symbols"
  BASE ${_icons_out}
  FILES ${_icons_files} ${_icons_out}/LICENSE.lucide)
