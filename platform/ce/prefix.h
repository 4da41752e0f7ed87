/* Included before every file of the handheld's build: makes the mingw-w64 headers fit ARM and
 * newlib. */
#pragma once

/* newlib's own types first, so that the Win32 headers do not define them differently. */
#include <sys/types.h>
#define _TIME_T_DEFINED
#define _TIMESPEC_DEFINED

#define _WIN32 1
#define WIN32 1
#define UNDER_CE 1
#define _ARM_ 1
#define _M_ARM 4
#define UNICODE 1
#define _UNICODE 1
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#define WINVER 0x0502
#define _WIN32_WINNT 0x0502

/* ARM has one calling convention, and the linker's thunks make every import a plain function. */
#undef __cdecl
#undef _cdecl
#undef __stdcall
#undef __fastcall
#undef __thiscall
#undef __declspec
#undef __unaligned
#define __cdecl
#define _cdecl
#define __stdcall
#define __fastcall
#define __thiscall
#define __declspec(attribute)
#define __unaligned

#define __int8 char
#define __int16 short
#define __int32 int
#define __int64 long long

#define __MINGW_INTRIN_INLINE extern __inline__ __attribute__((__always_inline__, __gnu_inline__))

/* stralign.h wants functions of a C library that is not there. */
#define __STRALIGN_H_
