// Marks what the shared library exports; everything else is hidden.
#pragma once

#if defined(__GNUC__)
#define OVXMLLIB_API __attribute__((visibility("default")))
#else
#define OVXMLLIB_API
#endif
