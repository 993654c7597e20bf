#pragma once

/* A host that hands its records to Tabulor through the C callback table, written in C as
 * such a host would be. */

#include "production/data/host/CallbackRecordset.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct test_host
{
    int32_t records;        /* records 1 to records */
    int32_t fail_at;        /* moving to this record fails; 0 for never */
    int64_t reported_count; /* what record_count answers */
    int32_t releases;       /* how often release was called */
    int32_t position;       /* the current record, from 1 */
    char text[64];          /* the current text value */
} test_host;

/* Seven fields: "Nº" Long, "Name" Text (empty every seventh record), "Price" Currency,
 * "Day" Date, "Ratio" Double, "Flag" Boolean and "Raw" bytes with a zero byte inside. */
tabulor_recordset_callbacks test_host_callbacks(test_host* host);

#ifdef __cplusplus
}
#endif
