# Where ccache is installed, nothing is compiled a second time.
find_program(CCACHE ccache)
if(CCACHE)
  # It keeps what uses a precompiled header only when told that the header stands for its sources. To take what belongs
  # to a source from the compiler's own list spares it a reading of all headers before each compilation.
  set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_DEPEND=1 "${CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER "${CMAKE_CXX_COMPILER_LAUNCHER}")
endif()
