# What "cmake --install" puts where. The driver and the stand-in lie in a folder of their own, off the library path:
# ostravel-host looks there, and a runtime is given the driver by its project.
include(GNUInstallDirs)

set(programs "")
foreach(program ostravel-host ostravel-tags ostravel-plc)
  if(TARGET ${program})
    list(APPEND programs ${program})
  endif()
endforeach()
if(programs)
  install(TARGETS ${programs} RUNTIME)
endif()
if(TARGET ostravel)
  install(TARGETS ostravel LIBRARY DESTINATION lib/ostravel)
endif()
if(TARGET ostravel_standin)
  install(TARGETS ostravel_standin LIBRARY DESTINATION lib/ostravel/standin)
endif()

foreach(program IN LISTS programs)
  install(FILES completion/bash/${program} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES completion/zsh/_${program} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endforeach()
if(programs)
  install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

find_program(SCDOC scdoc)
if(SCDOC)
  set(pages "")
  foreach(program IN LISTS programs)
    set(page ${PROJECT_BINARY_DIR}/man/${program}.1)
    add_custom_command(OUTPUT ${page}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/man
      COMMAND sh -c "'${SCDOC}' <'${PROJECT_SOURCE_DIR}/man/${program}.1.scd' >'${page}'"
      DEPENDS man/${program}.1.scd
      VERBATIM)
    list(APPEND pages ${page})
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endforeach()
  add_custom_target(manual_pages ALL DEPENDS ${pages})
endif()
