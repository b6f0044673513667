# Fails when any C++ source of the project is not clang-format clean.
# Run as: cmake -DCLANG_FORMAT=... -DSOURCE_DIR=... -P CheckFormat.cmake
file(GLOB_RECURSE sources
  ${SOURCE_DIR}/src/*.cpp ${SOURCE_DIR}/src/*.h
  ${SOURCE_DIR}/app/*.cpp ${SOURCE_DIR}/app/*.h
  ${SOURCE_DIR}/cli/*.cpp ${SOURCE_DIR}/cli/*.h
  ${SOURCE_DIR}/tests/*.cpp ${SOURCE_DIR}/tests/*.h
  ${SOURCE_DIR}/bench/*.cpp ${SOURCE_DIR}/bench/*.h)
list(LENGTH sources count)
execute_process(
  COMMAND ${CLANG_FORMAT} --dry-run --Werror --style=file ${sources}
  RESULT_VARIABLE status
  ERROR_VARIABLE problems)
if(NOT status EQUAL 0)
  message("${problems}")
  message(FATAL_ERROR "clang-format: some files need formatting (run scripts/format)")
endif()
message(STATUS "clang-format: ${count} files clean")
