#include "JetFixture.h"

#include "TestSupport.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/data/jet/JetRecordset.h"
#include "production/databases/OpenDatabase.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace tabulor::test {

namespace {

QByteArray quoted(const QByteArray& bytes)
{
    QByteArray text = bytes;
    text.replace('"', "\"\"");
    return '"' + text + '"';
}

QByteArray exportValue(Recordset& records, int field)
{
    const QVariant value = records.value(field);
    if (value.isNull())
        return {};
    switch (records.fieldType(field)) {
    case FieldBoolean:
        return value.toBool() ? "1" : "0";
    case FieldCurrency: {
        const qint64 units = value.value<Currency>().tenThousandths;
        return QByteArray::number(units / Currency::kScale) + '.' +
               QByteArray::number(std::abs(units % Currency::kScale)).rightJustified(4, '0');
    }
    case FieldSingle:
        return QByteArray::number(float(value.toDouble()), 'g', 8);
    case FieldDate: {
        const QDateTime when = value.metaType() == QMetaType::fromType<QDate>()
                                   ? QDateTime(value.toDate(), QTime(0, 0), Qt::UTC)
                                   : value.toDateTime();
        return quoted(when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toUtf8());
    }
    case FieldText:
    case FieldMemo:
        return quoted(value.toString().toUtf8());
    case FieldBinary:
    case FieldLongBinary:
        // A report shows only their size; the export prints every byte.
        return quoted(dynamic_cast<JetRecordset&>(records).bytes(field));
    default:
        return value.toString().toUtf8();
    }
}

QByteArray latin1Pattern(const QString& text)
{
    return text.toLatin1();
}

QByteArray utf16Pattern(const QString& text)
{
    return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

} // namespace

std::unique_ptr<DataSource> openJet(const QString& path)
{
    QString error;
    std::unique_ptr<DataSource> source = openDatabase(path, &error);
    EXPECT_TRUE(source) << error.toStdString();
    return source;
}

std::unique_ptr<Recordset> openSource(DataSource& source, const QString& name)
{
    QString error;
    std::unique_ptr<Recordset> records = source.openRecordSource(name, std::nullopt, &error);
    EXPECT_TRUE(records) << name.toStdString() << ": " << error.toStdString();
    return records;
}

QByteArray exportText(Recordset& records)
{
    QByteArrayList header;
    for (int field = 0; field < records.fieldCount(); ++field)
        header.append(records.fieldName(field).toUtf8());
    QByteArray text = header.join(',') + '\n';
    for (; !records.atEnd(); records.moveNext()) {
        QByteArrayList line;
        for (int field = 0; field < records.fieldCount(); ++field)
            line.append(exportValue(records, field));
        text += line.join(',') + '\n';
    }
    return text;
}

int renameInFile(const QString& path, const QString& from, const QString& to)
{
    EXPECT_EQ(from.size(), to.size());
    QByteArray bytes = readBytes(path);
    int count = 0;
    for (const auto& [find, replace] : {std::pair(latin1Pattern(from), latin1Pattern(to)),
                                        std::pair(utf16Pattern(from), utf16Pattern(to))}) {
        for (qsizetype at = bytes.indexOf(find); at >= 0; at = bytes.indexOf(find, at + 1)) {
            bytes.replace(at, replace.size(), replace);
            ++count;
        }
    }
    writeBytes(path, bytes);
    return count;
}

} // namespace tabulor::test
