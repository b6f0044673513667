# sorvel_command_line_docs(TARGET COMPLETION args...): after each build of the
# executable TARGET, runs it to write its manual page (--help-man) and its bash,
# zsh and fish completions (the COMPLETION arguments, then the shell's name)
# into ${CMAKE_CURRENT_BINARY_DIR}/TARGET-docs, and installs them where each
# reader looks. Both come from the executable's own table of its command line,
# so they cannot drift from what it accepts.

include(GNUInstallDirs)

function(sorvel_command_line_docs target)
  cmake_parse_arguments(ARG "" "" "COMPLETION" ${ARGN})
  if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    message(STATUS "${target}: no manual page or completions when cross-compiling")
    return()
  endif()
  set(dir ${CMAKE_CURRENT_BINARY_DIR}/${target}-docs)
  set(man ${dir}/${target}.1)
  set(bash ${dir}/bash/${target})
  set(zsh ${dir}/zsh/_${target})
  set(fish ${dir}/fish/${target}.fish)
  set(script ${PROJECT_SOURCE_DIR}/cmake/RunToFile.cmake)
  set(run ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${target}>)
  add_custom_command(
    OUTPUT ${man} ${man}.gz ${bash} ${zsh} ${fish}
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${man} -P ${script} -- ${run} --help-man
    # Installed compressed, as manual pages are on Debian; no name or time in
    # the header, so the same page gives the same bytes.
    COMMAND gzip -9nkf ${man}
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${bash} -P ${script} -- ${run} ${ARG_COMPLETION} bash
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${zsh} -P ${script} -- ${run} ${ARG_COMPLETION} zsh
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${fish} -P ${script} -- ${run} ${ARG_COMPLETION} fish
    DEPENDS ${target} ${script}
    COMMENT "Writing the manual page and shell completions of ${target}"
    VERBATIM)
  add_custom_target(${target}_docs ALL DEPENDS ${man} ${man}.gz ${bash} ${zsh} ${fish})
  set_target_properties(${target} PROPERTIES SORVEL_DOCS_DIR ${dir})

  install(FILES ${man}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${bash} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${zsh} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
  install(FILES ${fish} DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endfunction()
