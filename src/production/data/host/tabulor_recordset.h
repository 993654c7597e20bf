#ifndef TABULOR_RECORDSET_H
#define TABULOR_RECORDSET_H

/* A recordset that a host writes in C (or in any language that can call C): a table of
 * functions and a pointer to the host's own data, which every function receives. The types
 * are plain C, texts are UTF-8, and the table carries its own size so that later versions can
 * add functions without breaking hosts built against this one. */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* What a field's value holds; the members of tabulor_value it uses are named. */
enum tabulor_value_kind
{
    TABULOR_VALUE_NULL = 0,     /* nothing: an empty field */
    TABULOR_VALUE_BOOLEAN = 1,  /* integer: zero is false */
    TABULOR_VALUE_INTEGER = 2,  /* integer */
    TABULOR_VALUE_REAL = 3,     /* real */
    TABULOR_VALUE_CURRENCY = 4, /* integer: ten-thousandths, so 12.50 is 125000 */
    TABULOR_VALUE_TEXT = 5,     /* text and size: UTF-8 */
    TABULOR_VALUE_DATE = 6, /* text and size: "YYYY-MM-DD", "YYYY-MM-DD HH:MM:SS" or "HH:MM:SS" */
    TABULOR_VALUE_BYTES = 7 /* text and size: any bytes */
};

/* A size that says the text ends with a zero byte. */
#define TABULOR_ZERO_TERMINATED ((size_t)-1)

typedef struct tabulor_value
{
    int32_t kind; /* a tabulor_value_kind */
    int64_t integer;
    double real;
    /* Owned by the host; it is copied before the host's next function is called. */
    const char* text;
    size_t size; /* bytes at text, or TABULOR_ZERO_TERMINATED */
} tabulor_value;

typedef struct tabulor_recordset_callbacks
{
    size_t struct_size; /* sizeof(tabulor_recordset_callbacks) as the host was built with it */
    void* user_data;    /* passed to every function */

    /* The number of fields; -1 when the host cannot tell, which makes it no recordset. */
    int32_t (*field_count)(void* user_data);
    /* A field's name, UTF-8 and zero-terminated; copied at once. */
    const char* (*field_name)(void* user_data, int32_t field);
    /* A field's type as a field type code: 1 Boolean, 4 Long, 5 Currency, 7 Double, 8 Date,
     * 10 Text, 16 BigInt, ...; Text when the function is missing or gives 0 or less. */
    int32_t (*field_type)(void* user_data, int32_t field);
    /* Moves to the first or the next record; nonzero on success. */
    int32_t (*move_first)(void* user_data);
    int32_t (*move_next)(void* user_data);
    /* Nonzero once past the last record. */
    int32_t (*eof)(void* user_data);
    /* Fills *value (which arrives as NULL) with the current record's value of a field;
     * nonzero on success. */
    int32_t (*value)(void* user_data, int32_t field, tabulor_value* value);
    /* The number of records as far as the host knows; -1 when it does not. */
    int64_t (*record_count)(void* user_data);
    /* Called once when the recordset is no longer used; may be missing. */
    void (*release)(void* user_data);
} tabulor_recordset_callbacks;

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* TABULOR_RECORDSET_H */
