# Makes the language packs that stand beside an executable: modules that hold nothing but resources.

# add_language_packs(<executable target> [<name[=value]>...])
# Builds <build folder>/<target>.exe.<language>.ui of every res/languages/<language>.rc, together with the target. The
# further arguments are definitions for the resource scripts.
function(add_language_packs target)
  find_program(PACK_WINDRES x86_64-w64-mingw32-windres REQUIRED)
  if(HANDHELD)
    find_package(Python3 3.10 REQUIRED COMPONENTS Interpreter)
    set(python "${CMAKE_COMMAND}" -E env PYTHONDONTWRITEBYTECODE=1 "${Python3_EXECUTABLE}")
  endif()
  set(tools "${PROJECT_SOURCE_DIR}/tools/handheld")
  set(folder "${PROJECT_SOURCE_DIR}/res/languages")
  set(objects "${CMAKE_CURRENT_BINARY_DIR}/languages")
  file(MAKE_DIRECTORY "${objects}")
  list(TRANSFORM ARGN PREPEND -D OUTPUT_VARIABLE definitions)
  file(GLOB scripts CONFIGURE_DEPENDS "${folder}/[0-9a-f][0-9a-f][0-9a-f][0-9a-f].rc")
  set(packs)
  foreach(script IN LISTS scripts)
    get_filename_component(language "${script}" NAME_WE)
    set(pack "${CMAKE_BINARY_DIR}/${target}.exe.${language}.ui")
    set(shared "${folder}/pack.rc" "${PROJECT_SOURCE_DIR}/res/menus.rc" "${PROJECT_SOURCE_DIR}/res/resource.h")
    if(HANDHELD)
      add_custom_command(
        OUTPUT "${pack}"
        COMMAND "${PACK_WINDRES}" -O res -c 65001 -I "${folder}" ${definitions} "${script}" "${objects}/${language}.res"
        COMMAND ${python} "${tools}/resource_module.py" "${objects}/${language}.res" "${pack}"
        DEPENDS "${script}" ${shared} "${tools}/resource_module.py" "${tools}/elf_to_pe.py" "${tools}/resource_file.py"
        COMMENT "Making the language pack ${language}"
        VERBATIM)
    else()
      add_custom_command(
        OUTPUT "${pack}"
        COMMAND "${PACK_WINDRES}" -O coff -c 65001 -I "${folder}" ${definitions} "${script}" "${objects}/${language}.o"
        COMMAND "${CMAKE_CXX_COMPILER}" -shared -nostdlib -Wl,--entry=0 -Wl,--no-insert-timestamp
          "${objects}/${language}.o" -o "${pack}"
        DEPENDS "${script}" ${shared}
        COMMENT "Making the language pack ${language}"
        VERBATIM)
    endif()
    list(APPEND packs "${pack}")
  endforeach()
  add_custom_target(language_packs ALL DEPENDS ${packs})
  add_dependencies(${target} language_packs)
endfunction()
