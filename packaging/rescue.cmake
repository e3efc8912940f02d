# Run by CPack when the programs are laid out: packs them, stripped, into one tar.gz.
cmake_minimum_required(VERSION 3.25)

set(name systally-${CPACK_PACKAGE_VERSION})
set(folder ${CPACK_TEMPORARY_DIRECTORY}/${name})
set(archive ${CPACK_PACKAGE_DIRECTORY}/${name}-${CMAKE_SYSTEM_PROCESSOR}.tar.gz)
file(GLOB programs ${CPACK_TEMPORARY_DIRECTORY}/programs/bin/*
                   ${CPACK_TEMPORARY_DIRECTORY}/programs/sbin/*)
file(COPY ${programs} DESTINATION ${folder})
configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright ${folder}/copyright COPYONLY
               NO_SOURCE_PERMISSIONS)

set(date)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  set(date --mtime=@$ENV{SOURCE_DATE_EPOCH})
endif()
execute_process(
  COMMAND tar -c -I "gzip -9n" -f ${archive} --format=ustar --sort=name ${date}
          --owner=0 --group=0 --numeric-owner ${name}
  WORKING_DIRECTORY ${CPACK_TEMPORARY_DIRECTORY}
  COMMAND_ERROR_IS_FATAL ANY)
set(CPACK_EXTERNAL_BUILT_PACKAGES ${archive})
