/* The interface of Velloria's plug-ins: shared libraries that lie beside the program under their fixed names
   "Chimer.dll", "Larkport.dll", "Wrenport.dll" and "VellInfo.dll", on every platform.

   A plug-in exports one function, velloria_plugin_get. Texts are UTF-8 and stay the owner's; paths are full ones. All
   calls come from one thread. A structure only ever grows at its end: `size` tells how much of it the plug-in knows. */
#ifndef VELLORIA_PLUGIN_H
#define VELLORIA_PLUGIN_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define VELLORIA_PLUGIN_INTERFACE 1

/* What every plug-in tells of itself. */
typedef struct velloria_information {
    int32_t (*get_version_major)(void);
    int32_t (*get_version_minor)(void);
    int32_t (*get_version_revision)(void);
} velloria_information;

/* "VellInfo.dll": writes a page about a diary. */
typedef struct velloria_diary_information {
    /* The diary database, and the page to write. 0 when either can't be used. */
    int32_t (*set_paths)(const char* database, const char* page);
    void (*run)(void);
} velloria_diary_information;

typedef struct velloria_plugin {
    uint32_t size; /* of this structure, in bytes */
    const velloria_information* information;
    const velloria_diary_information* diary_information; /* null in all others */
} velloria_plugin;

/* `interface_version` is VELLORIA_PLUGIN_INTERFACE of the program. Null when the plug-in can't serve it. */
typedef const velloria_plugin* (*velloria_plugin_get_function)(uint32_t interface_version);

#ifdef __cplusplus
}
#endif

#endif
