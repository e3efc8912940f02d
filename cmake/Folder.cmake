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
# library systally::FOLDER. Builds that are to compile quickly compile the headers named once for all
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

# systally_optimize_together(TARGETS...): GCC makes the static program out of these parts as if they
# were one source, with -O3: their small functions then cost no calls. The objects hold what that
# takes beside their code. To be called where the parts are linked; what is installed of them goes
# through systally_install_plain().
set(systally_whole_program OFF)
if(SYSTALLY_STATIC AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(systally_whole_program ON)
endif()
function(systally_optimize_together)
  if(systally_whole_program)
    foreach(target ${ARGN})
      target_compile_options(${target} PRIVATE -O3 -flto=auto -ffat-lto-objects)
      target_link_options(${target} PRIVATE -O3 -flto=auto)
    endforeach()
  endif()
endfunction()

# systally_install_plain(FILE COMPONENT): takes GCC's link-time sections out of an archive that is
# installed as FILE, below the prefix unless that is absolute, so that any compiler can link it. To
# be called behind its install(TARGETS ...). A link leads to the build's own archive, which stays.
function(systally_install_plain file component)
  if(systally_whole_program)
    install(CODE "
      set(archive \"${file}\")
      cmake_path(ABSOLUTE_PATH archive BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\")
      set(archive \"\$ENV{DESTDIR}\${archive}\")
      if(NOT IS_SYMLINK \"\${archive}\")
        execute_process(COMMAND \"${CMAKE_OBJCOPY}\" -D -w -R .gnu.lto_* -R .gnu.debuglto_*
                                -N __gnu_lto_* \"\${archive}\"
                        COMMAND_ERROR_IS_FATAL ANY)
      endif()"
      COMPONENT ${component})
  endif()
endfunction()
