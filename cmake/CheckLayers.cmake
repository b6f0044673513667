# Fails when a source includes a folder above its own layer. Each folder may
# include itself and the folders listed for it here, which are exactly the
# libraries it links (see src/CMakeLists.txt and docs/architecture.md). An
# include without a folder must name a file beside the including one.
# Run as: cmake -DSOURCE_DIR=... -P CheckLayers.cmake

set(engine core scan safety deepclean duplicates demo removal)
set(allowed_core core)
set(allowed_scan core scan)
set(allowed_safety core safety)
set(allowed_deepclean core scan deepclean)
set(allowed_duplicates core duplicates)
set(allowed_demo core demo)
set(allowed_removal core scan safety deepclean removal)
set(allowed_state ${engine} state)
set(allowed_explorer ${engine} state explorer)
set(allowed_files ${engine} state files)
set(allowed_deepclean/area ${engine} state deepclean/area)
set(allowed_look core look)
# The interface: the QML module's C++ beside its QML.
set(allowed_removal/sheets ${engine} state explorer files look shell removal/sheets)
set(allowed_shell ${engine} state explorer files look shell removal/sheets)
# The executables.
set(allowed_cli core scan safety deepclean duplicates removal)
set(allowed_app ${engine} state explorer files look shell removal/sheets)

file(GLOB_RECURSE sources RELATIVE ${SOURCE_DIR}
  ${SOURCE_DIR}/src/*.cpp ${SOURCE_DIR}/src/*.h
  ${SOURCE_DIR}/app/*.cpp ${SOURCE_DIR}/app/*.h
  ${SOURCE_DIR}/cli/*.cpp ${SOURCE_DIR}/cli/*.h)

set(problems "")
set(checked 0)
foreach(source IN LISTS sources)
  # The unit a file belongs to: its folder below src/ (removal/sheets is a
  # unit of its own), or app / cli.
  string(REGEX REPLACE "^src/" "" relative ${source})
  get_filename_component(dir ${relative} DIRECTORY)
  if(dir MATCHES "^removal/sheets")
    set(unit removal/sheets)
  elseif(dir MATCHES "^deepclean/area")
    set(unit deepclean/area)
  else()
    string(REGEX REPLACE "/.*" "" unit ${dir})
  endif()
  if(NOT DEFINED allowed_${unit})
    list(APPEND problems "${source}: folder '${unit}' has no place in the layers")
    continue()
  endif()
  math(EXPR checked "${checked} + 1")

  file(STRINGS ${SOURCE_DIR}/${source} includes REGEX "^#include \"")
  foreach(line IN LISTS includes)
    string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" header ${line})
    if(header MATCHES "^(.+)/[^/]+$")
      set(target ${CMAKE_MATCH_1})
      if(NOT target STREQUAL "removal/sheets" AND NOT target STREQUAL "deepclean/area")
        string(REGEX REPLACE "/.*" "" target ${target})
      endif()
      list(FIND allowed_${unit} ${target} found)
      if(found EQUAL -1)
        list(APPEND problems "${source}: includes ${header}, above the layer of '${unit}'")
      endif()
    else()
      get_filename_component(here ${SOURCE_DIR}/${source} DIRECTORY)
      # moc output and generated headers live in the build tree.
      if(NOT EXISTS ${here}/${header} AND NOT header MATCHES "(\\.moc|_autogen.*)$")
        list(APPEND problems "${source}: includes ${header} without its folder")
      endif()
    endif()
  endforeach()
endforeach()

if(problems)
  list(JOIN problems "\n" text)
  message(FATAL_ERROR "Includes against the layer order:\n${text}")
endif()
message(STATUS "layers: ${checked} files include only their own layer and those below")
