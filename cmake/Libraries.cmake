# The libraries that everything but the plug-in and psd/ may use.
#
# A build for Windows on Debian finds none of them among its own: they are headers, or small enough to compile here,
# and are taken from the system's folders one by one, since its C library's headers lie beside them.

if(NOT CMAKE_CROSSCOMPILING)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  find_package(TinyGLTF REQUIRED)
  find_package(utf8cpp REQUIRED)
  if(MORVANE_TESTS)
    find_package(GTest REQUIRED)
  endif()
  return()
endif()

set(MORVANE_HEADERS ${PROJECT_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${MORVANE_HEADERS})
foreach(header CLI nlohmann stb utf8 utf8.h utf8cpp tiny_gltf.h)
  if(EXISTS /usr/include/${header})
    file(CREATE_LINK /usr/include/${header} ${MORVANE_HEADERS}/${header} SYMBOLIC)
  endif()
endforeach()
# The glTF library asks for these without their folders.
foreach(header nlohmann/json.hpp stb/stb_image.h stb/stb_image_write.h)
  get_filename_component(name ${header} NAME)
  file(CREATE_LINK /usr/include/${header} ${MORVANE_HEADERS}/${name} SYMBOLIC)
endforeach()

foreach(target CLI11::CLI11 nlohmann_json::nlohmann_json utf8cpp)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} INTERFACE ${MORVANE_HEADERS})
endforeach()

file(WRITE ${PROJECT_BINARY_DIR}/TinyGltf.cpp
  "#define TINYGLTF_IMPLEMENTATION\n#define STB_IMAGE_IMPLEMENTATION\n#define STB_IMAGE_WRITE_IMPLEMENTATION\n"
  "#include <tiny_gltf.h>\n")
add_library(morvane_tinygltf STATIC ${PROJECT_BINARY_DIR}/TinyGltf.cpp)
target_include_directories(morvane_tinygltf SYSTEM PUBLIC ${MORVANE_HEADERS})
add_library(TinyGLTF::TinyGLTF ALIAS morvane_tinygltf)

if(MORVANE_TESTS)
  set(INSTALL_GTEST OFF)
  set(gtest_force_shared_crt ON)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  foreach(name gtest gtest_main)
    if(NOT TARGET GTest::${name})
      add_library(GTest::${name} ALIAS ${name})
    endif()
  endforeach()
endif()
