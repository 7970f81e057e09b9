# Fetches what the page is made of: cmake -DNPM=npm -DFOLDER=folder with the two package files -P install.cmake

execute_process(
  COMMAND ${NPM} ci --prefer-offline --ignore-scripts --no-audit --no-fund --loglevel=error
  WORKING_DIRECTORY ${FOLDER} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "npm could not fetch what the page of `morvane view` is made of. "
                      "Try again, or build without the page: cmake -DMORVANE_VIEW=OFF .")
endif()
