# Project-wide compile settings applied to every target we own.
function(sorvel_target_settings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor)
  if(SORVEL_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  # Paths travel as raw bytes; forbid the silent QByteArray <-> QString casts
  # that would decode them lossily behind our back.
  target_compile_definitions(${target} PRIVATE
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_RESTRICTED_CAST_FROM_ASCII
    QT_NO_URL_CAST_FROM_STRING
    _FILE_OFFSET_BITS=64)
endfunction()
