# One library or program per folder, with the companions' programs beside their library. A folder's
# headers are visible to those targets alone that link it, so an include against the direction of the
# arrows does not compile.

# Makes the headers of FOLDER visible as "FOLDER/name.h" to TARGET and to what links it.
function(systally_publish_headers target folder)
  set(root ${PROJECT_BINARY_DIR}/include/${folder})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${root}>)
endfunction()

# systally_library(FOLDER SOURCES... LINKS... [PRECOMPILED HEADERS...] [WITHOUT_EXCEPTIONS]): the
# library systally::FOLDER. Builds that want to be made fast compile the headers named once for all
# its sources; the others show that each source includes what it uses.
function(systally_library folder)
  cmake_parse_arguments(arg "WITHOUT_EXCEPTIONS" "" "SOURCES;LINKS;PRECOMPILED" ${ARGN})
  add_library(systally_${folder} STATIC ${arg_SOURCES})
  add_library(systally::${folder} ALIAS systally_${folder})
  target_link_libraries(systally_${folder} PUBLIC ${arg_LINKS}
                        PRIVATE $<BUILD_INTERFACE:systally_options>)
  if(SYSTALLY_PRECOMPILE AND arg_PRECOMPILED)
    target_precompile_headers(systally_${folder} PRIVATE ${arg_PRECOMPILED})
    # GCC forgets that precompiled headers are not ours, and sees bounds broken in them.
    target_compile_options(systally_${folder} PRIVATE
      $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds -Wno-stringop-overflow>)
  endif()
  if(arg_WITHOUT_EXCEPTIONS)
    target_compile_options(systally_${folder} PRIVATE -fno-exceptions)
  endif()
  systally_publish_headers(systally_${folder} ${folder})
endfunction()
