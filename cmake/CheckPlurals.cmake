# Fails when a count text of the sources has no entry in the English plural
# table. A count text is a string literal holding %n or %Ln; the table
# (translations/sorvel_en.ts) must hold it as the source of a numerus message,
# or "1 files" is what the user reads.
# Run as: cmake -DSOURCE_DIR=... -P CheckPlurals.cmake

# Semicolons would split CMake lists: both sides write them as @semicolon@.
file(READ ${SOURCE_DIR}/translations/sorvel_en.ts table)
string(REPLACE ";" "@semicolon@" table "${table}")
# The table's sources, unescaped, each between two markers.
string(REGEX MATCHALL "<message numerus=\"yes\">[^<]*<source>[^<]*</source>" messages "${table}")
set(known "")
foreach(message IN LISTS messages)
  string(REGEX REPLACE ".*<source>([^<]*)</source>" "\\1" text "${message}")
  string(REPLACE "&lt;" "<" text "${text}")
  string(REPLACE "&gt;" ">" text "${text}")
  string(REPLACE "&amp;" "&" text "${text}")
  string(APPEND known "|${text}|")
endforeach()

file(GLOB_RECURSE sources ${SOURCE_DIR}/src/*.cpp ${SOURCE_DIR}/src/*.qml ${SOURCE_DIR}/app/*.cpp
  ${SOURCE_DIR}/cli/*.cpp)
set(problems "")
set(checked 0)
foreach(source IN LISTS sources)
  file(READ ${source} content)
  string(REPLACE ";" "@semicolon@" content "${content}")
  string(REGEX MATCHALL "\"[^\"\n]*%L?n[^\"\n]*\"" literals "${content}")
  foreach(literal IN LISTS literals)
    string(REGEX REPLACE "^\"(.*)\"$" "\\1" text "${literal}")
    math(EXPR checked "${checked} + 1")
    string(FIND "${known}" "|${text}|" at)
    if(at EQUAL -1)
      file(RELATIVE_PATH shown ${SOURCE_DIR} ${source})
      string(REPLACE "@semicolon@" ";" text "${text}")
      string(APPEND problems "  ${shown}: \"${text}\"\n")
    endif()
  endforeach()
endforeach()

if(checked EQUAL 0)
  message(FATAL_ERROR "No count texts found under ${SOURCE_DIR}")
endif()
if(problems)
  message(FATAL_ERROR "Count texts missing from translations/sorvel_en.ts:\n${problems}")
endif()
message(STATUS "${checked} count texts have their English forms")
