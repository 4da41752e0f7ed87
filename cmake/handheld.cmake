# Makes executables for Windows CE on ARM: add_handheld_executable. Needs handheld-toolchain.cmake.
cmake_minimum_required(VERSION 3.25)
enable_language(ASM)
find_package(Python3 3.10 REQUIRED COMPONENTS Interpreter)
find_program(HANDHELD_WINDRES x86_64-w64-mingw32-windres REQUIRED)

get_filename_component(HANDHELD_ROOT "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(HANDHELD_TOOLS "${HANDHELD_ROOT}/tools/handheld")
set(HANDHELD_IMPORTS "${HANDHELD_ROOT}/platform/ce/imports.txt")

# Python files beside the tools would make the source folder dirty.
set(HANDHELD_PYTHON "${CMAKE_COMMAND}" -E env PYTHONDONTWRITEBYTECODE=1 "${Python3_EXECUTABLE}")

set(handheldRuntimeSources
  atomics exception_globals header_functions heap process_end start static_guards terminate wide_characters)
list(TRANSFORM handheldRuntimeSources REPLACE "(.+)" "${HANDHELD_ROOT}/platform/ce/runtime/\\1.cpp")
add_library(handheld_runtime OBJECT ${handheldRuntimeSources})
target_include_directories(handheld_runtime PUBLIC "${HANDHELD_ROOT}")
set_target_properties(handheld_runtime PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON)
# The runtime makes exceptions possible and therefore uses none; its loops must not become calls of themselves.
target_compile_options(handheld_runtime PRIVATE -fno-exceptions -fno-tree-loop-distribute-patterns -Wall -Wextra)

# The call thunks of all imports, and a linker script for each of the two links. They are the same for every executable.
set(handheldLink "${CMAKE_CURRENT_BINARY_DIR}/handheld")
file(MAKE_DIRECTORY "${handheldLink}")
set(HANDHELD_THUNKS "${handheldLink}/imports.s")
set(HANDHELD_SCRIPT "${handheldLink}/executable.ld")
set(HANDHELD_MOVED_SCRIPT "${handheldLink}/executable_moved.ld")
add_custom_command(
  OUTPUT "${HANDHELD_THUNKS}" "${HANDHELD_SCRIPT}" "${HANDHELD_MOVED_SCRIPT}"
  COMMAND ${HANDHELD_PYTHON} "${HANDHELD_TOOLS}/make_imports.py"
    --imports "${HANDHELD_IMPORTS}" --template "${HANDHELD_TOOLS}/executable.ld.in" --assembly "${HANDHELD_THUNKS}"
    --script 0x00010000 "${HANDHELD_SCRIPT}" --script 0x00450000 "${HANDHELD_MOVED_SCRIPT}"
  DEPENDS "${HANDHELD_IMPORTS}" "${HANDHELD_TOOLS}/executable.ld.in" "${HANDHELD_TOOLS}/make_imports.py"
    "${HANDHELD_TOOLS}/import_list.py" "${HANDHELD_TOOLS}/tool_error.py"
  COMMENT "Making the import thunks"
  VERBATIM)
add_custom_target(handheld_link_inputs DEPENDS "${HANDHELD_THUNKS}" "${HANDHELD_SCRIPT}" "${HANDHELD_MOVED_SCRIPT}")
add_library(handheld_imports OBJECT "${HANDHELD_THUNKS}")
add_dependencies(handheld_imports handheld_link_inputs)

# One link of the executable, as an ELF file.
function(handheldAddLink target script)
  add_executable(${target} $<TARGET_OBJECTS:handheld_runtime> $<TARGET_OBJECTS:handheld_imports>)
  add_dependencies(${target} handheld_link_inputs)
  set_target_properties(${target} PROPERTIES SUFFIX .elf LINKER_LANGUAGE CXX LINK_DEPENDS "${script}"
    RUNTIME_OUTPUT_DIRECTORY "${handheldLink}")
  target_link_options(${target} PRIVATE
    # No -lc: whatever would need newlib's system calls or its 32-bit characters must not link.
    -nostdlib -nostartfiles
    "LINKER:-T,${script}" "LINKER:-Map,${handheldLink}/${target}.map"
    LINKER:--emit-relocs LINKER:--gc-sections LINKER:--target1-abs LINKER:--target2=rel
    # StrongARM has no BX: every return tests the caller's state and branches plainly where it can.
    LINKER:--fix-v4bx-interworking
    # The Debian libraries are built with small enumerations and 32-bit characters, but use neither at their edges.
    LINKER:--no-enum-size-warning LINKER:--no-wchar-size-warning
    LINKER:--no-warn-rwx-segments LINKER:-z,max-page-size=4096)
  target_link_libraries(${target} PRIVATE ${ARGN} -Wl,--start-group stdc++ gcc -Wl,--end-group)
endfunction()

# add_handheld_executable(NAME <name> LIBRARIES <targets...> [RESOURCES <file.rc>] [RESOURCE_DEPENDS <files...>]
#                         [RESOURCE_INCLUDES <folders...>] [RESOURCE_DEFINITIONS <name[=value]...>])
# Builds <build folder>/<name>.exe and <name>.map; the target is <name>. One of the libraries defines wWinMain.
# An OBJECT library must be named here itself: behind another library its objects would not arrive.
function(add_handheld_executable)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME;RESOURCES"
    "LIBRARIES;RESOURCE_DEPENDS;RESOURCE_INCLUDES;RESOURCE_DEFINITIONS")
  if(NOT arg_NAME OR NOT arg_LIBRARIES OR arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR
      "add_handheld_executable needs NAME and LIBRARIES; not understood: '${arg_UNPARSED_ARGUMENTS}'.")
  endif()

  handheldAddLink(${arg_NAME}_link "${HANDHELD_SCRIPT}" ${arg_LIBRARIES})
  handheldAddLink(${arg_NAME}_moved_link "${HANDHELD_MOVED_SCRIPT}" ${arg_LIBRARIES})

  set(resourceArguments)
  set(compiledResources)
  if(arg_RESOURCES)
    get_filename_component(script "${arg_RESOURCES}" ABSOLUTE)
    get_filename_component(scriptFolder "${script}" DIRECTORY)
    set(compiledResources "${handheldLink}/${arg_NAME}.res")
    set(options)
    foreach(folder IN LISTS arg_RESOURCE_INCLUDES ITEMS "${scriptFolder}")
      get_filename_component(folder "${folder}" ABSOLUTE)
      list(APPEND options --include "${folder}")
    endforeach()
    foreach(definition IN LISTS arg_RESOURCE_DEFINITIONS)
      list(APPEND options --define "${definition}")
    endforeach()
    list(TRANSFORM arg_RESOURCE_DEPENDS REPLACE "^([^/$])" "${CMAKE_CURRENT_SOURCE_DIR}/\\1")
    add_custom_command(
      OUTPUT "${compiledResources}"
      COMMAND ${HANDHELD_PYTHON} "${HANDHELD_TOOLS}/compile_resources.py" --windres "${HANDHELD_WINDRES}" ${options}
        --depfile "${compiledResources}.d" "${script}" "${compiledResources}"
      DEPENDS "${script}" ${arg_RESOURCE_DEPENDS} "${HANDHELD_TOOLS}/compile_resources.py"
        "${HANDHELD_TOOLS}/tool_error.py"
      DEPFILE "${compiledResources}.d"
      COMMENT "Compiling the resources of ${arg_NAME}.exe"
      VERBATIM)
    set(resourceArguments --resources "${compiledResources}")
  endif()

  set(executable "${CMAKE_BINARY_DIR}/${arg_NAME}.exe")
  set(tools tool_error import_list make_imports elf_reader resource_file elf_to_pe)
  list(TRANSFORM tools REPLACE "(.+)" "${HANDHELD_TOOLS}/\\1.py")
  add_custom_command(
    OUTPUT "${executable}"
    BYPRODUCTS "${CMAKE_BINARY_DIR}/${arg_NAME}.map"
    COMMAND ${HANDHELD_PYTHON} "${HANDHELD_TOOLS}/elf_to_pe.py" "$<TARGET_FILE:${arg_NAME}_link>" "${executable}"
      --second-link "$<TARGET_FILE:${arg_NAME}_moved_link>" --imports "${HANDHELD_IMPORTS}" ${resourceArguments}
    COMMAND "${CMAKE_COMMAND}" -E copy "${handheldLink}/${arg_NAME}_link.map" "${CMAKE_BINARY_DIR}/${arg_NAME}.map"
    DEPENDS ${arg_NAME}_link ${arg_NAME}_moved_link "$<TARGET_FILE:${arg_NAME}_link>"
      "$<TARGET_FILE:${arg_NAME}_moved_link>" ${compiledResources} "${HANDHELD_IMPORTS}" ${tools}
    COMMENT "Making ${arg_NAME}.exe"
    VERBATIM)
  add_custom_target(${arg_NAME} ALL DEPENDS "${executable}")
endfunction()
