#pragma once

#include <QByteArray>
#include <QString>
#include <QStringDecoder>

#include <mdbtools.h>

#include <memory>
#include <optional>

namespace tabulor {

struct JetTableDeleter
{
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};
// A table definition with its columns read.
using JetTable = std::unique_ptr<MdbTableDef, JetTableDeleter>;

// One libmdb handle on a Jet or ACE database file (.mdb, .accdb), read-only. A handle has one
// page buffer, so rows of one table are read through one handle at a time: every cursor gets
// a handle of its own from clone(). libmdb trusts what the file says about its pages, so the
// file is checked before that: the header, a length of whole pages, and the pages of every
// table before its rows are read.
class JetHandle
{
public:
    // Null with *error set for a missing, unreadable, foreign, encrypted or damaged file.
    static std::unique_ptr<JetHandle> open(const QString& path, QString* error);

    ~JetHandle();
    JetHandle(const JetHandle&) = delete;
    JetHandle& operator=(const JetHandle&) = delete;

    // Another handle on the same file with its own page buffers and copy of the catalog.
    std::unique_ptr<JetHandle> clone() const;

    const QString& path() const { return m_path; }
    bool isJet3() const;
    MdbHandle* raw() const { return m_mdb; }

    // The catalog: an entry for each row of the object table, in its order. Entries live as
    // long as the handle: nothing here reads the catalog a second time, which would free them.
    int catalogSize() const;
    const MdbCatalogEntry& catalogEntry(int index) const;
    // The position of the table (object type MDB_TABLE) with exactly this name, or -1.
    int findTable(const QString& name) const;

    // Reads the definition and columns of the table at a catalog position, once every page its
    // usage map names has been found inside the file. Null with *error set otherwise, and for
    // a position outside the catalog.
    JetTable openTable(int catalogIndex, QString* error) const;

    // The bytes of a long value (memo or OLE object) whose 12-byte field lies at `start` of the
    // current page, following its chain of pages; nullopt when the chain is damaged.
    std::optional<QByteArray> readLongValue(int start, int length) const;
    // The number of bytes of that long value as its field gives it, without reading them;
    // nullopt when the field is damaged.
    std::optional<qint64> longValueSize(int start, int length) const;

    // Text as the file stores it: UCS-2, possibly compressed, from Jet 4 on; bytes in the
    // file's code page in Jet 3.
    QString decodeText(const unsigned char* data, int length) const;

    // "The database 'x' is damaged: <what>."
    QString damaged(const QString& what) const;

private:
    JetHandle(MdbHandle* mdb, const QString& path, quint32 pageCount);

    // Builds libmdb's catalog from the object table, read like any other table. libmdb's own
    // reader also decodes each object's property block, trusting every length and page link
    // in it, so that a damaged block makes it loop for ever; nothing here needs the
    // properties.
    bool readCatalog(QString* error);

    bool pageInFile(quint64 page) const { return page < m_pageCount; }
    bool usageMapInFile(MdbTableDef* table) const;

    MdbHandle* m_mdb;
    QString m_path;
    quint32 m_pageCount;
    mutable QStringDecoder m_jet3Text;
};

} // namespace tabulor
