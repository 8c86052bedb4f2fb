# Installs the public headers: every header that lies directly in a library's folder, and of the
# headers under internal/ exactly those that a public header includes, directly or through another
# header. (A public header may include an internal one only for a field that it holds by value;
# those are installed because a user's compiler must read them, and promise nothing to users.)
#
# Runs within the install step; needs GXSHAPE_SOURCE_DIR, GXSHAPE_HEADER_FOLDERS (those whose headers are meant)
# and GXSHAPE_INSTALL_INCLUDEDIR.

cmake_policy(VERSION 3.22)

set(_roots base . include)    # what <velstd/...>, <cntr/...> and <gxshape/...> are looked up in
set(_queue)
foreach(_folder IN LISTS GXSHAPE_HEADER_FOLDERS)
  file(GLOB _headers "${GXSHAPE_SOURCE_DIR}/${_folder}/*.h")
  list(APPEND _queue ${_headers})
endforeach()

set(_done)
while(_queue)
  list(POP_FRONT _queue _header)
  list(APPEND _done "${_header}")
  file(STRINGS "${_header}" _lines REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"][^>\"]*internal/")
  foreach(_line IN LISTS _lines)
    string(REGEX REPLACE "^[^<\"]*[<\"]([^>\"]*)[>\"].*$" "\\1" _name "${_line}")
    foreach(_root IN LISTS _roots)
      get_filename_component(_found "${GXSHAPE_SOURCE_DIR}/${_root}/${_name}" ABSOLUTE)
      if(EXISTS "${_found}" AND NOT _found IN_LIST _done AND NOT _found IN_LIST _queue)
        list(APPEND _queue "${_found}")
      endif()
    endforeach()
  endforeach()
endwhile()

foreach(_header IN LISTS _done)
  file(RELATIVE_PATH _place "${GXSHAPE_SOURCE_DIR}" "${_header}")
  string(REGEX REPLACE "^(base|include)/" "" _place "${_place}")
  get_filename_component(_place "${_place}" DIRECTORY)
  file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/${GXSHAPE_INSTALL_INCLUDEDIR}/${_place}"
       TYPE FILE FILES "${_header}")
endforeach()
