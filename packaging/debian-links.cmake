# Puts the program, its manual page and its completion where a Debian system looks for them.
if(CPACK_GENERATOR STREQUAL "DEB")
  foreach(file bin/morvane share/man/man1/morvane.1 share/bash-completion/completions/morvane)
    set(link ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/${file})
    get_filename_component(folder ${link} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK /opt/morvane/${file} ${link} SYMBOLIC)
  endforeach()
endif()
