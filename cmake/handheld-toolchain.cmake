# Compiles for Windows CE 4.2 and later on ARM with Debian's bare-metal ARM compiler.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

set(CMAKE_C_COMPILER arm-none-eabi-gcc)
set(CMAKE_CXX_COMPILER arm-none-eabi-g++)
set(CMAKE_ASM_COMPILER arm-none-eabi-gcc)

set(HANDHELD TRUE)

# ARMv4T in ARM state is what the oldest of these devices run, and what the Debian libraries are built for.
set(handheldMachine "-march=armv4t -marm -mfloat-abi=soft")
get_filename_component(handheldPrefix "${CMAKE_CURRENT_LIST_DIR}/../platform/ce/prefix.h" ABSOLUTE)
string(JOIN " " handheldFlags
  "${handheldMachine}"
  # The layout of types is that of Win32: 16-bit characters, enumerations of four bytes, signed char.
  -Os -fshort-wchar -fno-short-enums -fms-extensions -fsigned-char
  # What nobody calls is dropped by the linker, function by function.
  -ffunction-sections -fdata-sections -fno-common
  "-include \"${handheldPrefix}\""
  # The C and C++ libraries' own headers come first.
  "-idirafter /usr/share/mingw-w64/include"
  # Stacks are small: tell of large frames now, and write down all of them for check_executable.py.
  -Wframe-larger-than=2048 -fstack-usage)

set(CMAKE_C_FLAGS_INIT "${handheldFlags}")
set(CMAKE_CXX_FLAGS_INIT "${handheldFlags}")
set(CMAKE_ASM_FLAGS_INIT "${handheldMachine}")

# CMake's own choice for Release would set -O3 behind -Os.
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_RELEASE "-DNDEBUG" CACHE STRING "Flags for Release")
  set(CMAKE_${language}_FLAGS_MINSIZEREL "-DNDEBUG" CACHE STRING "Flags for MinSizeRel")
  set(CMAKE_${language}_FLAGS_RELWITHDEBINFO "-g -DNDEBUG" CACHE STRING "Flags for RelWithDebInfo")
  set(CMAKE_${language}_FLAGS_DEBUG "-g" CACHE STRING "Flags for Debug")
endforeach()

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
