#ifndef TABULOR_H
#define TABULOR_H

/* Tabulor's C interface: a host in C (or in any language that can call C) creates a component,
 * sets its four properties and lets it produce a report from a definition file into a
 * document, whose pages it then saves as PDF or PNG.
 *
 * - Handles are opaque; every function takes them as its first argument and refuses NULL.
 * - Texts are UTF-8, zero-terminated. Texts handed back stay valid until the next call with
 *   the same handle.
 * - Functions return a tabulor_status; nothing is thrown and nothing aborts the host. Why a
 *   call failed is told by tabulor_last_error (component) or tabulor_document_last_error.
 * - A component, and the documents it renders into, belong to one thread. The library lays
 *   reports out with Qt: when the host has no Qt application, the first component or document
 *   makes one (without windows) on the thread that creates it, and keeps it for the rest of
 *   the process. Hosts that use Qt themselves create their QGuiApplication first.
 *
 * Link with -ltabulor (pkg-config tabulor, or find_package(Tabulor) in CMake). */

#include "tabulor_recordset.h"

#include <stdint.h>

#define TABULOR_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

typedef enum tabulor_status
{
    TABULOR_OK = 0,
    TABULOR_ERROR_ARGUMENT = 1,   /* a NULL handle, or a value out of its range */
    TABULOR_ERROR_DEFINITION = 2, /* the report definition could not be loaded */
    TABULOR_ERROR_REPORT = 3,     /* the report stopped before it was complete */
    TABULOR_ERROR_OUTPUT = 4,     /* the pages could not be written */
    TABULOR_ERROR_INTERNAL = 5    /* anything else, such as running out of memory */
} tabulor_status;

/* The values of the access mode property. */
typedef enum tabulor_access_mode
{
    TABULOR_USE = 0,              /* use reports only */
    TABULOR_USE_MODIFY = 1,       /* also open and save report files */
    TABULOR_USE_MODIFY_CREATE = 2 /* also create reports and choose another database */
} tabulor_access_mode;

typedef struct tabulor_component tabulor_component;
typedef struct tabulor_document tabulor_document;

/* The library's version, such as "6.0.1". */
TABULOR_API const char* tabulor_version(void);

/* Makes a component with its defaults: show designer on, toolbar allowed, no layout window,
 * access mode TABULOR_USE. *component is NULL when it fails. */
TABULOR_API int tabulor_component_create(tabulor_component** component);
/* Frees a component; NULL is ignored. */
TABULOR_API void tabulor_component_destroy(tabulor_component* component);

/* The four properties. Booleans are 0 or 1 when read; any nonzero value sets them. An access
 * mode outside the enumeration is kept as given. A host linked with libtabulor_designer
 * (instead of libtabulor) gets the designer: with show_tabulor set, tabulor_do_report opens it
 * and returns when the user closes it, and the document then holds the report as last
 * designed. With libtabulor alone there are no windows, and the report is always produced
 * into the document. */
TABULOR_API int tabulor_set_show_tabulor(tabulor_component* component, int show);
TABULOR_API int tabulor_get_show_tabulor(const tabulor_component* component, int* show);
TABULOR_API int tabulor_set_allow_toolbar(tabulor_component* component, int allow);
TABULOR_API int tabulor_get_allow_toolbar(const tabulor_component* component, int* allow);
TABULOR_API int tabulor_set_show_layout_window(tabulor_component* component, int show);
TABULOR_API int tabulor_get_show_layout_window(const tabulor_component* component, int* show);
TABULOR_API int tabulor_set_access_mode(tabulor_component* component, int32_t mode);
TABULOR_API int tabulor_get_access_mode(const tabulor_component* component, int32_t* mode);

/* What the component would show the user in a message box becomes its last error. With echo
 * set, it is also written to standard error. Off by default. */
TABULOR_API int tabulor_set_echo_messages(tabulor_component* component, int echo);

/* Why the last failed call on the component failed, or "" after a call that succeeded. With
 * NULL: why the last call on this thread that had no component to tell failed (a creation, or
 * a call given a NULL handle). */
TABULOR_API const char* tabulor_last_error(const tabulor_component* component);

/* A document of pages that reports are rendered into. */
TABULOR_API int tabulor_document_create(tabulor_document** document);
TABULOR_API void tabulor_document_destroy(tabulor_document* document);
/* Whether reports draw their page header and footer on this document. Off by default. */
TABULOR_API int tabulor_document_set_overlay_headers(tabulor_document* document, int overlay);
TABULOR_API int tabulor_document_get_overlay_headers(const tabulor_document* document,
                                                     int* overlay);
TABULOR_API int tabulor_document_page_count(const tabulor_document* document, int32_t* pages);
/* Saves every page as one PDF file. The file is replaced only once it is complete. */
TABULOR_API int tabulor_document_save_pdf(tabulor_document* document, const char* path);
/* Saves pages first_page to last_page (1-based; last_page 0 for the last one) as PNG images of
 * dpi dots per inch (10 to 1200). "%d" in pattern stands for the page number; it may be left
 * out for a single page. */
TABULOR_API int tabulor_document_save_png(tabulor_document* document, const char* pattern,
                                          int32_t dpi, int32_t first_page, int32_t last_page);
/* As tabulor_last_error, for the document's own calls. */
TABULOR_API const char* tabulor_document_last_error(const tabulor_document* document);

/* Loads the report definition at path and renders the full report into output.
 * - path: NULL or "" loads nothing and renders nothing.
 * - output: NULL only loads and checks the definition.
 * - records: NULL reads the database that the definition names. Otherwise the host's rows are
 *   read through the table instead; a table whose field_count is missing or answers -1 is no
 *   recordset and is passed over. The table is copied; its release function, if any, is
 *   called once before this function returns.
 * Fails with TABULOR_ERROR_DEFINITION when the file is no definition or its data cannot be
 * opened, with TABULOR_ERROR_REPORT when the report stopped. */
TABULOR_API int tabulor_do_report(tabulor_component* component, const char* path,
                                  tabulor_document* output,
                                  const tabulor_recordset_callbacks* records);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* TABULOR_H */
