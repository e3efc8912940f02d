# Run by CPack before it closes a package: adds what Debian wants in each beside what is installed.
cmake_minimum_required(VERSION 3.25)

if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()

set(CHANGELOG ${CMAKE_CURRENT_LIST_DIR}/../CHANGELOG.md)
# That of SOURCE_DATE_EPOCH, where it is set.
string(TIMESTAMP DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)

# copy(FILE TO): where DESTDIR, which CPack has set, does not matter.
function(copy file to)
  configure_file(${file} ${to} COPYONLY NO_SOURCE_PERMISSIONS)
endfunction()

# compress(FILES...): as gzip does, without names and times.
function(compress)
  execute_process(COMMAND gzip -9n ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# add_documents(COMPONENT PACKAGE): licence, changes, and the reasons for what lintian doubts.
function(add_documents component package)
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  set(documents ${share}/doc/${package})
  copy(${CMAKE_CURRENT_LIST_DIR}/copyright ${documents}/copyright)
  set(PACKAGE ${package})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${documents}/changelog.Debian @ONLY
                 NO_SOURCE_PERMISSIONS)
  compress(${documents}/changelog.Debian)
  if(EXISTS ${CHANGELOG})
    copy(${CHANGELOG} ${documents}/changelog)
    compress(${documents}/changelog)
  endif()
  copy(${CMAKE_CURRENT_LIST_DIR}/${package}.lintian-overrides ${share}/lintian/overrides/${package})
  file(GLOB pages ${share}/man/man*/*)
  if(pages)
    compress(${pages})
  endif()
endfunction()

add_documents(programs systally)
add_documents(development libsystally-dev)
