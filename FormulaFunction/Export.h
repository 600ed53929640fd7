// Symbol visibility of the library. Everything is hidden unless marked FF_API.
#pragma once

#if defined(_WIN32)
#if defined(FORMULAFUNCTION_BUILD)
#define FF_API __declspec(dllexport)
#else
#define FF_API __declspec(dllimport)
#endif
#else
#define FF_API __attribute__((visibility("default")))
#endif
