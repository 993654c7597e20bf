#include "CallbackHost.h"

#include <stdio.h>
#include <string.h>

static test_host* host_of(void* user_data)
{
    return (test_host*)user_data;
}

static int32_t field_count(void* user_data)
{
    (void)user_data;
    return 7;
}

static const char* field_name(void* user_data, int32_t field)
{
    static const char* const names[] = {"N\xc2\xba", "Name", "Price", "Day",
                                        "Ratio",     "Flag", "Raw"};
    (void)user_data;
    return field >= 0 && field < 7 ? names[field] : NULL;
}

static int32_t field_type(void* user_data, int32_t field)
{
    static const int32_t types[] = {4, 10, 5, 8, 7, 1, 11};
    (void)user_data;
    return field >= 0 && field < 7 ? types[field] : 0;
}

static int32_t move_to(test_host* host, int32_t position)
{
    if (host->fail_at != 0 && position >= host->fail_at)
        return 0;
    host->position = position;
    return 1;
}

static int32_t move_first(void* user_data)
{
    return move_to(host_of(user_data), 1);
}

static int32_t move_next(void* user_data)
{
    return move_to(host_of(user_data), host_of(user_data)->position + 1);
}

static int32_t eof(void* user_data)
{
    return host_of(user_data)->position > host_of(user_data)->records;
}

static int32_t value(void* user_data, int32_t field, tabulor_value* out)
{
    test_host* host = host_of(user_data);
    const int32_t n = host->position;
    switch (field) {
    case 0:
        out->kind = TABULOR_VALUE_INTEGER;
        out->integer = n;
        return 1;
    case 1:
        if (n % 7 == 0)
            return 1; /* left as NULL */
        snprintf(host->text, sizeof host->text, "Record %d \xe2\x80\x93 \xc3\xbc", (int)n);
        out->kind = TABULOR_VALUE_TEXT;
        out->text = host->text;
        out->size = TABULOR_ZERO_TERMINATED;
        return 1;
    case 2:
        out->kind = TABULOR_VALUE_CURRENCY;
        out->integer = n * 12500;
        return 1;
    case 3:
        snprintf(host->text, sizeof host->text, "2024-01-%02d", (int)(n % 28 + 1));
        out->kind = TABULOR_VALUE_DATE;
        out->text = host->text;
        out->size = strlen(host->text);
        return 1;
    case 4:
        out->kind = TABULOR_VALUE_REAL;
        out->real = n / 4.0;
        return 1;
    case 5:
        out->kind = TABULOR_VALUE_BOOLEAN;
        out->integer = n % 2;
        return 1;
    case 6:
        out->kind = TABULOR_VALUE_BYTES;
        out->text = "a\0b";
        out->size = 3;
        return 1;
    default:
        return 0;
    }
}

static int64_t record_count(void* user_data)
{
    return host_of(user_data)->reported_count;
}

static void release(void* user_data)
{
    host_of(user_data)->releases++;
}

tabulor_recordset_callbacks test_host_callbacks(test_host* host)
{
    tabulor_recordset_callbacks callbacks;
    memset(&callbacks, 0, sizeof callbacks);
    callbacks.struct_size = sizeof callbacks;
    callbacks.user_data = host;
    callbacks.field_count = field_count;
    callbacks.field_name = field_name;
    callbacks.field_type = field_type;
    callbacks.move_first = move_first;
    callbacks.move_next = move_next;
    callbacks.eof = eof;
    callbacks.value = value;
    callbacks.record_count = record_count;
    callbacks.release = release;
    return callbacks;
}
