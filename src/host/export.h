// ZYLHOST_API marks what zylhost offers to modules and applications; everything else stays inside.
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
