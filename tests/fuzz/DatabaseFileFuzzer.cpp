#include "FuzzRequire.h"
#include "InputFile.h"

#include "production/databases/OpenDatabase.h"

#include <QCollator>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

using namespace tabulor;

namespace {

// Each field's name, type and value, the text both ways where the source offers its bytes.
void readRecord(const Recordset& records)
{
    for (int field = 0; field < records.fieldCount(); ++field) {
        records.fieldName(field);
        records.fieldType(field);
        const QVariant value = records.value(field);
        std::string_view text;
        if (records.utf8Text(field, &text))
            fuzz::require(QString::fromUtf8(text.data(), qsizetype(text.size())) == value,
                          "a text's bytes are the text its value gives");
    }
}

// To the end, or to the first move that fails, which is where a reader stops.
void readToTheEnd(Recordset& records)
{
    fuzz::require(records.fieldCount() >= 0, "an open record source has fields");
    while (!records.atEnd()) {
        readRecord(records);
        if (!records.moveNext())
            break;
    }
    records.recordCount();
}

} // namespace

// A database file, damaged or hostile, opened by its name as a report opens it, then every
// record source it lists counted and read to the end in the file's order and sorted by its
// first field. Whatever is refused is refused with a message.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path =
        fuzz::writeInputFile(QStringLiteral("damaged" TABULOR_FUZZ_DATABASE_SUFFIX), data, size);
    QString error;
    const std::unique_ptr<DataSource> database = openDatabase(path, &error);
    if (!database) {
        fuzz::require(!error.isEmpty(), "a database that does not open says why");
        return 0;
    }
    const QCollator collator;
    for (const RecordSourceEntry& entry : database->recordSources()) {
        database->countRows(entry.name);
        error.clear();
        const std::unique_ptr<Recordset> records =
            database->openRecordSource(entry.name, std::nullopt, &error);
        if (!records) {
            fuzz::require(!error.isEmpty(), "a record source that does not open says why");
            continue;
        }
        readToTheEnd(*records);
        if (records->fieldCount() == 0)
            continue;
        const QList<SortField> order = {{records->fieldName(0), false}};
        if (const std::unique_ptr<Recordset> sorted =
                database->openSorted(entry.name, order, collator, &error))
            readToTheEnd(*sorted);
    }
    return 0;
}
