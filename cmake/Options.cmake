# How everything in the house is compiled and linked: language, warnings, hardening, sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

# All programs lie side by side, as they do when they are installed.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# Libraries hold no times and owners, so that two builds give the same bytes.
set(CMAKE_CXX_ARCHIVE_CREATE "<CMAKE_AR> qcD <TARGET> <LINK_FLAGS> <OBJECTS>")
set(CMAKE_CXX_ARCHIVE_APPEND "<CMAKE_AR> qD <TARGET> <LINK_FLAGS> <OBJECTS>")
set(CMAKE_CXX_ARCHIVE_FINISH "<CMAKE_RANLIB> -D <TARGET>")

# What every target of the house is compiled and linked with.
add_library(systally_options INTERFACE)
target_compile_options(systally_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<CXX_COMPILER_ID:Clang>:-Wreserved-identifier>)
# A table above 2 GiB needs a 64-bit file offset on 32-bit systems too.
target_compile_definitions(systally_options INTERFACE _FILE_OFFSET_BITS=64)
# Programs for root: overflows are caught, addresses vary, and nothing that is written is run.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(NOT SYSTALLY_SANITIZE AND NOT SYSTALLY_COVERAGE)
  target_compile_options(systally_options INTERFACE
    $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=3> -fstack-protector-strong
    # The same bytes wherever the sources and the build folder lie.
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
set(pie -pie)
if(SYSTALLY_STATIC)
  set(pie -static-pie)
endif()
target_link_options(systally_options INTERFACE
  $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${pie}>
  -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
# A program is started dozens of times on a machine: it brings nothing along that it does not use,
# and a static one spends little on moving itself to its address.
target_compile_options(systally_options INTERFACE
  $<$<CONFIG:Release>:-ffunction-sections -fdata-sections>)
target_link_options(systally_options INTERFACE $<$<CONFIG:Release>:-Wl,--gc-sections>)
if(SYSTALLY_STATIC)
  target_link_options(systally_options INTERFACE -Wl,-z,pack-relative-relocs)
endif()
if(SYSTALLY_SANITIZE)
  target_compile_options(systally_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(systally_options INTERFACE -fsanitize=address,undefined)
endif()
if(SYSTALLY_FUZZ)
  target_compile_options(systally_options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(systally_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(SYSTALLY_COVERAGE)
  target_compile_options(systally_options INTERFACE --coverage)
  target_link_options(systally_options INTERFACE --coverage)
endif()
