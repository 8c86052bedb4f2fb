# The library as a WebAssembly module (web/module), for the preset `web`: static libraries, Debian's
# emscripten. The result is bin/gxshape.wasm with bin/gxshape.js, which makes an instance of it; web/build.mjs
# makes package and page of them.
#
# Exceptions are WebAssembly's own (-fwasm-exceptions): they cost nothing where none is thrown, where the
# emulation by JavaScript made the module half as large again. None leaves the module (web/module/answers.cpp).

if(NOT EMSCRIPTEN)
  # In a native build: what the module's answers are compared with, beside the tool.
  add_executable(gxshape_web_walks EXCLUDE_FROM_ALL "${PROJECT_SOURCE_DIR}/web/tests/walks.cpp")
  target_link_libraries(gxshape_web_walks PRIVATE gxshape::gxshape gxshape::gxshape_io)
  target_compile_options(gxshape_web_walks PRIVATE ${GXSHAPE_WARNINGS})
  return()
endif()

file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/web/module/*.cpp")
add_executable(gxshape_web ${sources})
target_link_libraries(gxshape_web PRIVATE gxshape::gxshape gxshape::gxshape_io)
target_compile_options(gxshape_web PRIVATE ${GXSHAPE_WARNINGS})
set_target_properties(gxshape_web PROPERTIES OUTPUT_NAME gxshape)
# Code that may lie anywhere reaches each function and object through a table, which nobody needs here.
set_target_properties(gxshape gxshape_velstd gxshape_velip gxshape_veldispc gxshape_gxshape_io
                      PROPERTIES POSITION_INDEPENDENT_CODE OFF)
target_link_options(gxshape_web PRIVATE
  --no-entry
  -sMODULARIZE=1 -sEXPORT_NAME=makeGxshape
  -sENVIRONMENT=web,worker      # Node works with it too: whoever loads it hands over the bytes
  -sFILESYSTEM=0
  -sALLOW_MEMORY_GROWTH=1
  -sTOTAL_STACK=4194304         # holes nested 10,000 deep are looked at by recursion nowhere, but there is no check
  -sEXPORTED_FUNCTIONS=_malloc,_free
  -sEXPORTED_RUNTIME_METHODS=UTF8ToString)
