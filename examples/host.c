/* A host program in C that produces a report through Tabulor's C interface: once over the
 * database that the report definition names, and once over rows the host holds itself, handed
 * over as a recordset of C functions.
 *
 *   tabulor_host [DEFINITION.vrd [OUTPUT_FOLDER]]
 *
 * writes OUTPUT_FOLDER/from-database.pdf and OUTPUT_FOLDER/from-host.pdf (the current folder
 * by default). The host's rows have the fields of the sample report "Sales by Region", which is
 * the definition when none is given and the program was built with the project. */

#include <tabulor/tabulor.h>

#include <stdio.h>
#include <string.h>

/* One order, with the fields of the record source "Sales by Region". */
typedef struct order
{
    const char* region;
    const char* country;
    const char* customer;
    int32_t id;
    const char* date; /* YYYY-MM-DD */
    int64_t sales;    /* in ten-thousandths, as currency values are handed over */
} order;

static const order orders[] = {
    {"North", "Norway", "Fjordline Rope Works", 9001, "2024-03-04", 12500000},
    {"North", "Norway", "Fjordline Rope Works", 9002, "2024-03-18", 4315000},
    {"North", "Sweden", "Kallbacka Provisions", 9003, "2024-04-02", 987500},
    {"South", "Spain", "Harbour Lights Chandlery", 9004, "2024-04-11", 22040000},
    {"South", "Spain", "Harbour Lights Chandlery", 9005, "2024-05-20", 310000},
    {"South", "Italy", "Vigna Alta Traders", 9006, "2024-06-07", 7775500},
    {"West", "Ireland", "Cobh Quay Supplies", 9007, "2024-06-30", 15000000},
    {"West", "Portugal", "Ribeira Sailmakers", 9008, "2024-07-15", 5420000},
};

static const char* const field_names[] = {"Region",    "Country",   "Customer", "OrderID",
                                          "OrderDate", "OrderYear", "Sales"};
/* Field type codes: 10 Text, 4 Long, 8 Date, 5 Currency. */
static const int32_t field_types[] = {10, 10, 10, 4, 8, 4, 5};
enum
{
    FIELD_COUNT = 7,
    ORDER_COUNT = sizeof orders / sizeof orders[0]
};

typedef struct cursor
{
    int32_t position;
} cursor;

static int32_t field_count(void* user_data)
{
    (void)user_data;
    return FIELD_COUNT;
}

static const char* field_name(void* user_data, int32_t field)
{
    (void)user_data;
    return field >= 0 && field < FIELD_COUNT ? field_names[field] : NULL;
}

static int32_t field_type(void* user_data, int32_t field)
{
    (void)user_data;
    return field >= 0 && field < FIELD_COUNT ? field_types[field] : 0;
}

static int32_t move_first(void* user_data)
{
    ((cursor*)user_data)->position = 0;
    return 1;
}

static int32_t move_next(void* user_data)
{
    ((cursor*)user_data)->position++;
    return 1;
}

static int32_t at_end(void* user_data)
{
    return ((cursor*)user_data)->position >= ORDER_COUNT;
}

static int32_t text_value(tabulor_value* value, const char* text)
{
    value->kind = TABULOR_VALUE_TEXT;
    value->text = text;
    value->size = TABULOR_ZERO_TERMINATED;
    return 1;
}

static int32_t field_value(void* user_data, int32_t field, tabulor_value* value)
{
    const order* row = &orders[((cursor*)user_data)->position];
    switch (field) {
    case 0:
        return text_value(value, row->region);
    case 1:
        return text_value(value, row->country);
    case 2:
        return text_value(value, row->customer);
    case 3:
        value->kind = TABULOR_VALUE_INTEGER;
        value->integer = row->id;
        return 1;
    case 4:
        value->kind = TABULOR_VALUE_DATE;
        value->text = row->date;
        value->size = 10;
        return 1;
    case 5:
        value->kind = TABULOR_VALUE_INTEGER;
        value->integer = (row->date[0] - '0') * 1000 + (row->date[1] - '0') * 100 +
                         (row->date[2] - '0') * 10 + (row->date[3] - '0');
        return 1;
    case 6:
        value->kind = TABULOR_VALUE_CURRENCY;
        value->integer = row->sales;
        return 1;
    default:
        return 0;
    }
}

static int64_t record_count(void* user_data)
{
    (void)user_data;
    return ORDER_COUNT;
}

/* Renders the report into a new document and saves it as a PDF; 0 on success. */
static int render(tabulor_component* component, const char* definition,
                  const tabulor_recordset_callbacks* records, const char* pdf)
{
    tabulor_document* document = NULL;
    int32_t pages = 0;
    int status = tabulor_document_create(&document);
    if (status != TABULOR_OK) {
        fprintf(stderr, "tabulor_host: no document: %s\n", tabulor_last_error(NULL));
        return status;
    }
    tabulor_document_set_overlay_headers(document, 1);
    status = tabulor_do_report(component, definition, document, records);
    if (status != TABULOR_OK) {
        fprintf(stderr, "tabulor_host: %s\n", tabulor_last_error(component));
    } else if ((status = tabulor_document_save_pdf(document, pdf)) != TABULOR_OK) {
        fprintf(stderr, "tabulor_host: %s\n", tabulor_document_last_error(document));
    } else {
        tabulor_document_page_count(document, &pages);
        printf("%s: %d page(s)\n", pdf, (int)pages);
    }
    tabulor_document_destroy(document);
    return status;
}

int main(int argc, char** argv)
{
#ifdef TABULOR_HOST_SAMPLE
    const char* definition = argc > 1 ? argv[1] : TABULOR_HOST_SAMPLE;
#else
    const char* definition = argc > 1 ? argv[1] : NULL;
#endif
    const char* folder = argc > 2 ? argv[2] : ".";
    char from_database[4096];
    char from_host[4096];
    cursor rows = {0};
    tabulor_recordset_callbacks records;
    tabulor_component* component = NULL;
    int status;

    if (!definition || argc > 3) {
        fprintf(stderr, "usage: %s DEFINITION.vrd [OUTPUT_FOLDER]\n", argv[0]);
        return 2;
    }
    if (snprintf(from_database, sizeof from_database, "%s/from-database.pdf", folder) >=
            (int)sizeof from_database ||
        snprintf(from_host, sizeof from_host, "%s/from-host.pdf", folder) >=
            (int)sizeof from_host) {
        fprintf(stderr, "tabulor_host: the output folder's name is too long\n");
        return 2;
    }

    memset(&records, 0, sizeof records);
    records.struct_size = sizeof records;
    records.user_data = &rows;
    records.field_count = field_count;
    records.field_name = field_name;
    records.field_type = field_type;
    records.move_first = move_first;
    records.move_next = move_next;
    records.eof = at_end;
    records.value = field_value;
    records.record_count = record_count;

    if (tabulor_component_create(&component) != TABULOR_OK) {
        fprintf(stderr, "tabulor_host: no component: %s\n", tabulor_last_error(NULL));
        return 1;
    }
    /* Produce the report straight into the document, without the designer. */
    tabulor_set_show_tabulor(component, 0);
    status = render(component, definition, NULL, from_database);
    if (status == TABULOR_OK)
        status = render(component, definition, &records, from_host);
    tabulor_component_destroy(component);
    return status == TABULOR_OK ? 0 : 1;
}
