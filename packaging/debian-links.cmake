# Puts the program, its manual page and its completion, and the Python module, where a Debian system looks for them.
function(link_files component)
  set(folder ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component})
  if(NOT EXISTS ${folder})  # one package alone has no folder of its own
    set(folder ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
  endif()
  foreach(file ${ARGN})
    if(EXISTS ${folder}/opt/morvane/${file})
      get_filename_component(parent ${folder}/usr/${file} DIRECTORY)
      file(MAKE_DIRECTORY ${parent})
      file(CREATE_LINK /opt/morvane/${file} ${folder}/usr/${file} SYMBOLIC)
    endif()
  endforeach()
endfunction()

if(CPACK_GENERATOR STREQUAL "DEB")
  link_files(Unspecified bin/morvane share/man/man1/morvane.1 share/bash-completion/completions/morvane)
  link_files(python lib/python3/dist-packages/morvane)
endif()
