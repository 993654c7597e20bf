#include "production/data/jet/JetHandle.h"

#include "production/base/CodePages.h"
#include "production/data/jet/JetRecordset.h"
#include "production/data/jet/JetWarnings.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <cstring>

namespace tabulor {

namespace {

constexpr int HeaderSize = 0x18;
constexpr int VersionOffset = 0x14;
constexpr int Jet3PageSize = 2048;
constexpr int Jet4PageSize = 4096;
// The object table's definition is always on this page.
constexpr quint32 ObjectTablePage = 2;
// Size of the field that a memo or OLE column keeps in its row.
constexpr int LongValueFieldSize = 12;
constexpr quint32 LongValueInline = 0x80000000u;
constexpr quint32 LongValueSinglePage = 0x40000000u;
constexpr quint32 LongValueLengthMask = 0x3fffffffu;

quint32 le32(const unsigned char* data)
{
    return qFromLittleEndian<quint32>(data);
}

// libmdb copies names into fixed buffers; a longer name never matches.
QString catalogText(const char* name)
{
    return QString::fromUtf8(name, qsizetype(strnlen(name, MDB_MAX_OBJ_NAME)));
}

// The encoding that a Jet 3 file's code page stands for. MDB_JET3_CHARSET overrides it, as
// it does for the other tools built on libmdb.
QByteArray jet3Encoding(int codePage)
{
    if (const QByteArray forced = qgetenv("MDB_JET3_CHARSET"); !forced.isEmpty())
        return forced;
    const char* name = codePageEncoding(codePage);
    return name ? QByteArray(name) : QByteArrayLiteral("windows-1252");
}

// What the first bytes say: the page size of a Jet or ACE file, or nullopt for anything else.
std::optional<int> pageSizeFromHeader(const QByteArray& header)
{
    if (header.size() < HeaderSize || header[0] != '\0')
        return std::nullopt;
    const QByteArray magic = header.mid(4, 16);
    if (magic != QByteArray("Standard Jet DB", 16) && magic != QByteArray("Standard ACE DB", 16))
        return std::nullopt;
    const auto version = static_cast<unsigned char>(header[VersionOffset]);
    if (version > MDB_VER_ACCDB_2019)
        return std::nullopt;
    return version == MDB_VER_JET3 ? Jet3PageSize : Jet4PageSize;
}

MdbCatalogEntry* newCatalogEntry(MdbHandle* mdb, const QByteArray& name, int type, quint32 page,
                                 int flags)
{
    auto* entry = static_cast<MdbCatalogEntry*>(g_malloc0(sizeof(MdbCatalogEntry)));
    entry->mdb = mdb;
    qstrncpy(entry->object_name, name.constData(), sizeof entry->object_name);
    entry->object_type = type;
    entry->table_pg = page;
    entry->flags = flags;
    return entry;
}

// Hands a list of entries to libmdb as the handle's catalog, which the handle then owns.
void replaceCatalog(MdbHandle* mdb, GPtrArray* entries)
{
    mdb_free_catalog(mdb);
    mdb->catalog = entries;
    mdb->num_catalog = entries->len;
}

} // namespace

std::unique_ptr<JetHandle> JetHandle::open(const QString& path, QString* error)
{
    const auto fail = [&](const QString& message) {
        if (error)
            *error = message;
        return nullptr;
    };
    QFile file(path);
    if (!QFileInfo(path).isFile())
        return fail(QStringLiteral("The database '%1' does not exist.").arg(path));
    if (!file.open(QIODevice::ReadOnly))
        return fail(
            QStringLiteral("The database '%1' cannot be read: %2.").arg(path, file.errorString()));
    const std::optional<int> pageSize = pageSizeFromHeader(file.read(HeaderSize));
    if (!pageSize)
        return fail(QStringLiteral("'%1' is not a Jet database.").arg(path));
    // Jet files grow by whole pages; anything else was cut off or damaged.
    const qint64 size = file.size();
    if (size % *pageSize != 0 || size / *pageSize <= ObjectTablePage)
        return fail(QStringLiteral("The database '%1' is damaged: it is cut short.").arg(path));
    file.close();

    MdbHandle* mdb = nullptr;
    {
        const JetWarnings warnings;
        mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
        if (mdb && warnings.any()) {
            mdb_close(mdb);
            return fail(QStringLiteral("The database '%1' is damaged: %2.")
                            .arg(path, warnings.firstWarning()));
        }
    }
    if (!mdb)
        return fail(QStringLiteral("The database '%1' cannot be opened.").arg(path));
    std::unique_ptr<JetHandle> handle(new JetHandle(mdb, path, quint32(size / *pageSize)));

    if (!handle->readCatalog(error))
        return nullptr;

    // Every table is checked now, so that a damaged or cut-off file fails when it is opened
    // and not halfway through a report.
    for (int i = 0; i < handle->catalogSize(); ++i) {
        if (handle->catalogEntry(i).object_type != MDB_TABLE)
            continue;
        QString problem;
        if (!handle->openTable(i, &problem))
            return fail(problem);
    }
    return handle;
}

bool JetHandle::readCatalog(QString* error)
{
    // Until the catalog is read it holds the object table alone, whose definition is always
    // on the same page.
    GPtrArray* objectTable = g_ptr_array_new();
    g_ptr_array_add(objectTable,
                    newCatalogEntry(m_mdb, "MSysObjects", MDB_TABLE, ObjectTablePage, 0));
    replaceCatalog(m_mdb, objectTable);
    const std::unique_ptr<JetRecordset> rows = JetRecordset::open(*this, 0, std::nullopt, nullptr);
    if (!rows) {
        if (error)
            *error = QStringLiteral("The database '%1' cannot be read: it is encrypted or "
                                    "damaged.")
                         .arg(m_path);
        return false;
    }
    const auto column = [&](const char* wanted) {
        for (int i = 0; i < rows->fieldCount(); ++i) {
            if (rows->fieldName(i) == QLatin1String(wanted))
                return i;
        }
        return -1;
    };
    const int id = column("Id");
    const int name = column("Name");
    const int type = column("Type");
    const int flags = column("Flags");
    if (id < 0 || name < 0 || type < 0 || flags < 0) {
        if (error)
            *error = damaged(QStringLiteral("its object table lacks columns"));
        return false;
    }
    // An object's id holds the page of its definition in its low three bytes; the type's top
    // bit only tells a linked or system object apart.
    GPtrArray* entries = g_ptr_array_new();
    for (; !rows->atEnd(); rows->moveNext()) {
        g_ptr_array_add(entries,
                        newCatalogEntry(m_mdb, rows->value(name).toString().toUtf8(),
                                        rows->value(type).toInt() & 0x7f,
                                        quint32(rows->value(id).toLongLong()) & 0x00ffffffu,
                                        int(rows->value(flags).toLongLong())));
    }
    replaceCatalog(m_mdb, entries);
    if (!rows->readError().isEmpty()) {
        if (error)
            *error = rows->readError();
        return false;
    }
    return true;
}

JetHandle::JetHandle(MdbHandle* mdb, const QString& path, quint32 pageCount)
    : m_mdb(mdb), m_path(path), m_pageCount(pageCount)
{
    // Dates, money and text are decoded here from the raw bytes; libmdb only cracks rows.
    if (isJet3())
        m_jet3Text = QStringDecoder(jet3Encoding(mdb->f->code_page).constData());
}

JetHandle::~JetHandle()
{
    mdb_close(m_mdb);
}

std::unique_ptr<JetHandle> JetHandle::clone() const
{
    MdbHandle* copy = mdb_clone_handle(m_mdb);
    if (!copy)
        return nullptr;
    return std::unique_ptr<JetHandle>(new JetHandle(copy, m_path, m_pageCount));
}

bool JetHandle::isJet3() const
{
    return m_mdb->f->jet_version == MDB_VER_JET3;
}

int JetHandle::catalogSize() const
{
    return m_mdb->catalog ? int(m_mdb->num_catalog) : 0;
}

const MdbCatalogEntry& JetHandle::catalogEntry(int index) const
{
    return *static_cast<const MdbCatalogEntry*>(g_ptr_array_index(m_mdb->catalog, guint(index)));
}

int JetHandle::findTable(const QString& name) const
{
    for (int i = 0; i < catalogSize(); ++i) {
        const MdbCatalogEntry& entry = catalogEntry(i);
        if (entry.object_type == MDB_TABLE && catalogText(entry.object_name) == name)
            return i;
    }
    return -1;
}

JetTable JetHandle::openTable(int catalogIndex, QString* error) const
{
    // A name that the object table gives but the catalog cannot hold (a damaged one) is not
    // found there.
    if (catalogIndex < 0 || catalogIndex >= catalogSize()) {
        if (error)
            *error = damaged(QStringLiteral("a table it lists cannot be found"));
        return nullptr;
    }
    auto* entry =
        static_cast<MdbCatalogEntry*>(g_ptr_array_index(m_mdb->catalog, guint(catalogIndex)));
    const QString name = catalogText(entry->object_name);
    const JetWarnings warnings;
    JetTable table;
    if (pageInFile(entry->table_pg))
        table.reset(mdb_read_table(entry));
    if (!table || !usageMapInFile(table.get()) || !mdb_read_columns(table.get()) ||
        warnings.any()) {
        if (error)
            *error = damaged(QStringLiteral("the table '%1' cannot be read").arg(name));
        return nullptr;
    }
    return table;
}

bool JetHandle::usageMapInFile(MdbTableDef* table) const
{
    const unsigned char* map = table->usage_map;
    const size_t size = table->map_sz;
    if (!map || size < 1)
        return false;
    if (map[0] == 0) {
        // A bitmap of pages counted from the page named in the map.
        if (size < 5)
            return true;
        const quint64 first = le32(map + 1);
        for (size_t bit = 0; bit < (size - 5) * 8; ++bit) {
            if ((map[5 + bit / 8] >> (bit % 8) & 1) && !pageInFile(first + bit))
                return false;
        }
        return true;
    }
    if (map[0] != 1)
        return false;
    // A list of map pages, each a bitmap over its own stretch of the file.
    const quint64 pagesPerMap = quint64(m_mdb->fmt->pg_size - 4) * 8;
    for (size_t slot = 0; slot < (size - 1) / 4; ++slot) {
        const quint32 mapPage = le32(map + 1 + slot * 4);
        if (mapPage == 0)
            continue;
        if (!pageInFile(mapPage) || mdb_read_alt_pg(m_mdb, mapPage) != m_mdb->fmt->pg_size)
            return false;
        const unsigned char* bits = m_mdb->alt_pg_buf + 4;
        for (quint64 bit = 0; bit < pagesPerMap; ++bit) {
            if ((bits[bit / 8] >> (bit % 8) & 1) && !pageInFile(slot * pagesPerMap + bit))
                return false;
        }
    }
    return true;
}

std::optional<qint64> JetHandle::longValueSize(int start, int length) const
{
    if (length < LongValueFieldSize || start < 0 || start + length > m_mdb->fmt->pg_size)
        return std::nullopt;
    const quint32 header = le32(m_mdb->pg_buf + start);
    if (header & LongValueInline)
        return length - LongValueFieldSize;
    // Larger values live in rows of other pages, which together cannot hold more than the
    // file.
    const quint32 total = header & LongValueLengthMask;
    if (header & ~(LongValueInline | LongValueSinglePage | LongValueLengthMask) ||
        total > quint64(m_pageCount) * quint64(m_mdb->fmt->pg_size))
        return std::nullopt;
    return total;
}

std::optional<QByteArray> JetHandle::readLongValue(int start, int length) const
{
    const std::optional<qint64> total = longValueSize(start, length);
    if (!total)
        return std::nullopt;
    const unsigned char* field = m_mdb->pg_buf + start;
    const quint32 header = le32(field);
    if (header & LongValueInline)
        return QByteArray(reinterpret_cast<const char*>(field) + LongValueFieldSize, *total);
    // Either one row of another page, or a chain of rows that each begin with a pointer to
    // the next.
    const bool chained = !(header & LongValueSinglePage);
    const JetWarnings warnings;
    QByteArray value;
    quint32 pageRow = le32(field + 4);
    // Each row lies on its own page, so a chain longer than the file is a loop.
    for (quint32 steps = 0; pageRow != 0 && steps < m_pageCount; ++steps) {
        if (!pageInFile(pageRow >> 8))
            return std::nullopt;
        void* page = nullptr;
        int offset = 0;
        size_t rowLength = 0;
        if (mdb_find_pg_row(m_mdb, int(pageRow), &page, &offset, &rowLength) != 0 || warnings.any())
            return std::nullopt;
        const auto* row = static_cast<const unsigned char*>(page) + offset;
        if (!chained)
            return QByteArray(reinterpret_cast<const char*>(row), qsizetype(rowLength));
        if (rowLength < 4)
            return std::nullopt;
        value.append(reinterpret_cast<const char*>(row) + 4, qsizetype(rowLength) - 4);
        if (value.size() >= *total)
            break;
        pageRow = le32(row);
    }
    if (value.size() < *total)
        return std::nullopt;
    value.truncate(*total);
    return value;
}

QString JetHandle::decodeText(const unsigned char* data, int length) const
{
    if (isJet3()) {
        m_jet3Text.resetState();
        return m_jet3Text.decode(QByteArrayView(reinterpret_cast<const char*>(data), length));
    }
    // UCS-2 little-endian. After the marker FF FE the text is compressed: runs of one byte per
    // character (the high byte is zero) alternate with runs of two, each zero byte switching.
    if (length >= 2 && data[0] == 0xff && data[1] == 0xfe) {
        QString text;
        text.reserve(length);
        bool compressed = true;
        for (int i = 2; i < length;) {
            if (data[i] == 0) {
                compressed = !compressed;
                ++i;
            } else if (compressed) {
                text.append(QChar(data[i]));
                ++i;
            } else if (i + 1 < length) {
                text.append(QChar(char16_t(data[i] | data[i + 1] << 8)));
                i += 2;
            } else {
                break;
            }
        }
        return text;
    }
    QString text(length / 2, Qt::Uninitialized);
    for (int i = 0; i < length / 2; ++i)
        text[i] = QChar(char16_t(data[2 * i] | data[2 * i + 1] << 8));
    return text;
}

QString JetHandle::damaged(const QString& what) const
{
    return QStringLiteral("The database '%1' is damaged: %2.").arg(m_path, what);
}

} // namespace tabulor
