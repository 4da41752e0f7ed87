// Included before every file of this build: makes Wine's headers fit this machine's compiler, with
// 16-bit characters as the product has them.
#pragma once

#define WINE_UNICODE_NATIVE 1
#define UNICODE 1
#define _UNICODE 1
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#define WINVER 0x0601
#define _WIN32_WINNT 0x0601

// The standard library's own code for wide characters has 32-bit ones: everything is made anew.
#define _GLIBCXX_EXTERN_TEMPLATE 0
