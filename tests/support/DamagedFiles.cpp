#include "DamagedFiles.h"

#include "TestSupport.h"

#include <QList>
#include <QMap>
#include <QtEndian>

namespace tabulor::test {

namespace {

constexpr qsizetype kPageSize = 4096;

// The data pages of a Jet file by the table definition page that owns them, in file order.
QMap<quint32, QList<qsizetype>> jetDataPages(const QByteArray& bytes)
{
    QMap<quint32, QList<qsizetype>> pages;
    for (qsizetype page = 1; page < bytes.size() / kPageSize; ++page) {
        const auto* start = reinterpret_cast<const uchar*>(bytes.constData() + page * kPageSize);
        if (start[0] == 0x01)
            pages[qFromLittleEndian<quint32>(start + 4)].append(page);
    }
    return pages;
}

} // namespace

void damageMiddlePage(const QString& sqlitePath)
{
    QByteArray bytes = readBytes(sqlitePath);
    const qsizetype middlePage = bytes.size() / kPageSize / 2;
    bytes[middlePage * kPageSize] = char(0x77); // no kind of page
    writeBytes(sqlitePath, bytes);
}

int damageJetTables(const QString& jetPath)
{
    QByteArray bytes = readBytes(jetPath);
    const QMap<quint32, QList<qsizetype>> pages = jetDataPages(bytes);
    int damaged = 0;
    for (auto owned = pages.cbegin(); owned != pages.cend(); ++owned) {
        // The object table is defined on page 2.
        if (owned.key() == 2 || owned->size() < 4)
            continue;
        qToLittleEndian<quint32>(0x00abcdef,
                                 bytes.data() + owned->at(owned->size() / 2) * kPageSize + 4);
        ++damaged;
    }
    writeBytes(jetPath, bytes);
    return damaged;
}

} // namespace tabulor::test
