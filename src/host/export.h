// ZYLHOST_API exports a symbol from zylhost to modules and applications. All others are hidden.
#pragma once

#if defined(_WIN32)
#if defined(ZYLHOST_BUILD)
#define ZYLHOST_API __declspec(dllexport)
#else
#define ZYLHOST_API __declspec(dllimport)
#endif
#else
#define ZYLHOST_API __attribute__((visibility("default")))
#endif
