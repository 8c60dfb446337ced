/* The interface of Velloria's plug-ins: shared libraries that lie beside the program under their fixed names
   "Chimer.dll", "Larkport.dll", "Wrenport.dll" and "VellInfo.dll", on every platform.

   A plug-in exports one function, velloria_plugin_get. Texts are UTF-8 and stay the owner's; paths are full ones. All
   calls come from one thread, and no exception may leave one. Once loaded, a plug-in stays until the program ends.

   A structure only ever grows at its end: `size`, in bytes, tells how much of it its maker knows. The program uses no
   member beyond that, and counts a part as missing when a member that it needs is null or beyond it. A plug-in of the
   time before a member was added is never asked for that.

   Where a call returns int32_t without more words, a value below 0 is a failure, which last_error tells, and every
   other one a success; where it answers a question, 0 is no and a value above 0 yes. */
#ifndef VELLORIA_PLUGIN_H
#define VELLORIA_PLUGIN_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define VELLORIA_PLUGIN_INTERFACE 1

/* Kinds of a message box. */
#define VELLORIA_MESSAGE_PLAIN 0
#define VELLORIA_MESSAGE_INFORMATION 1
#define VELLORIA_MESSAGE_EXCLAMATION 2
#define VELLORIA_MESSAGE_CRITICAL 3

/* What an import is going to write. */
typedef struct velloria_import_plan {
    uint32_t size;           /* of this structure */
    const char* program;     /* where the entries come from, as the import mark is to name it: "Larkport" */
    uint32_t count;          /* of the entries */
    const char* const* days; /* the day of each of them, "2026/11/23", in any order */
    const char* notes;       /* what is not carried, with counts, a line each; "" when all is */
} velloria_import_plan;

/* What the program does for an object of a plug-in, from its create to the end of its release, or for one call.
   `context` goes back as the first argument of each call. */
typedef struct velloria_host {
    uint32_t size; /* of this structure */
    void* context;
    /* Paints the windows and runs timers, and takes no input: to be called now and then during long work. */
    void (*pump)(void* context);
    /* A box with OK alone, which gives 1; or, unless `is_question` is 0, one with Yes (1) and No (0). */
    int32_t (*message)(void* context, int32_t kind, const char* title, const char* text, int32_t is_question);
    /* The first panel of the status bar. */
    void (*status)(void* context, const char* text);
    /* Shows the person what an import has read, before it writes any of it; no transaction may be open. Gives the
       import mark for all of its entries, the name of a new group, valid until the next call; null when the person does
       not want them, which is no failure: the call that asked answers no. */
    const char* (*begin_import)(void* context, const velloria_import_plan* plan);
} velloria_host;

/* What every plug-in tells of itself. */
typedef struct velloria_information {
    uint32_t size; /* of this structure */
    int32_t (*get_version_major)(void);
    int32_t (*get_version_minor)(void);
    int32_t (*get_version_revision)(void);
} velloria_information;

/* "VellInfo.dll": writes a page about a diary. A link in it to "event:2026/11/23_1" opens that day's first entry in the
   editor. */
typedef struct velloria_diary_information {
    uint32_t size; /* of this structure */
    /* The diary database, and the page to write. 0 when either can't be used. */
    int32_t (*set_paths)(const char* database, const char* page);
    int32_t (*run)(void);
    /* The same as run, and called in its place where it is there: `host` is good until it returns. */
    int32_t (*run_with_host)(const velloria_host* host);
} velloria_diary_information;

/* "Chimer.dll": tells servers that a site has changed. The calls come in the order of the members. */
typedef struct velloria_ping {
    uint32_t size;                              /* of this structure */
    void* (*create)(const velloria_host* host); /* null when it can't be made */
    void (*release)(void* object);
    int32_t (*set_pop_up)(void* object, int32_t is_on);            /* whether it shows windows of its own: always 0 */
    int32_t (*set_ping_list_file)(void* object, const char* path); /* the list of servers, the plug-in's own file */
    int32_t (*set_blog_url)(void* object, const char* url);
    int32_t (*set_blog_name)(void* object, const char* name);
    int32_t (*pings_execute)(void* object); /* returns when all are done */
} velloria_ping;

/* Both kinds of exchange open the database themselves: an SQLite file, whose journal mode they leave as it is. The
   program holds no connection to it from `connect` to `release`; another program may, for some seconds. An imported
   entry carries the name of its group as its import mark. */

/* "Larkport.dll": the text format of Movable Type.
   Import: connect, prepare_import, open_file; if that is accepted, read_entries, and if that says yes, finish.
   Export: connect, prepare_export, open_file; if that is accepted, set_user_id, write_entries, and if that says yes,
   finish. */
typedef struct velloria_movable_type_exchange {
    uint32_t size;                              /* of this structure */
    void* (*create)(const velloria_host* host); /* null when it can't be made */
    void (*release)(void* object);
    int32_t (*connect)(void* object, const char* database);
    int32_t (*prepare_import)(void* object);
    int32_t (*prepare_export)(void* object);
    int32_t (*set_user_id)(void* object, const char* user_id); /* "" when the program has one user alone */
    int32_t (*write_entries)(void* object);                    /* answers */
    /* `is_accepted` becomes 1 for a file that can be used, else 0. An exported file does not exist yet. */
    int32_t (*open_file)(void* object, const char* path, int32_t* is_accepted, int32_t is_export);
    int32_t (*finish)(void* object);       /* answers */
    int32_t (*read_entries)(void* object); /* answers */
} velloria_movable_type_exchange;

/* "Wrenport.dll": the XML format of Hatena.
   Import: connect, prepare_import, open_file; if that is accepted, finish.
   Export: connect, prepare_export, open_file; if that is accepted, write_entries, and if that says yes, finish. */
typedef struct velloria_hatena_exchange {
    uint32_t size;                              /* of this structure */
    void* (*create)(const velloria_host* host); /* null when it can't be made */
    void (*release)(void* object);
    int32_t (*connect)(void* object, const char* database);
    int32_t (*prepare_import)(void* object);
    int32_t (*prepare_export)(void* object);
    int32_t (*write_entries)(void* object); /* answers */
    /* `is_accepted` becomes 1 for a file that can be used, else 0. An exported file does not exist yet. */
    int32_t (*open_file)(void* object, const char* path, int32_t* is_accepted, int32_t is_export);
    int32_t (*finish)(void* object); /* answers; an import takes the entries in here */
} velloria_hatena_exchange;

/* A part that a plug-in does not have is null. */
typedef struct velloria_plugin {
    uint32_t size; /* of this structure */
    const velloria_information* information;
    const velloria_diary_information* diary_information;
    const velloria_ping* ping;
    const velloria_movable_type_exchange* movable_type_exchange;
    const velloria_hatena_exchange* hatena_exchange;
    /* Why the last call failed, for the user to read; valid until the next call. */
    const char* (*last_error)(void);
} velloria_plugin;

/* `interface_version` is VELLORIA_PLUGIN_INTERFACE of the program. Null when the plug-in can't serve it. */
typedef const velloria_plugin* (*velloria_plugin_get_function)(uint32_t interface_version);

#ifdef __cplusplus
}
#endif

#endif
