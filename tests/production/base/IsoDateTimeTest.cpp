#include "production/base/IsoDateTime.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

TEST(IsoDateTime, TextIsReadStrictly)
{
    const QList<std::pair<QString, QVariant>> accepted = {
        {"2024-01-02", QDate(2024, 1, 2)},
        {"2024-01-02 10:20", QDateTime(QDate(2024, 1, 2), QTime(10, 20), Qt::UTC)},
        {"2024-01-02T10:20:30.123456Z",
         QDateTime(QDate(2024, 1, 2), QTime(10, 20, 30, 123), Qt::UTC)},
        {"2024-01-02 10:20:30-05:30",
         QDateTime(QDate(2024, 1, 2), QTime(10, 20, 30), Qt::OffsetFromUTC, -19800)},
        {"07:05", QTime(7, 5)},
        {"07:05:09.4", QTime(7, 5, 9, 400)},
    };
    for (const auto& [text, value] : accepted)
        EXPECT_EQ(parseIsoDateTime(text), value) << text.toStdString();

    const QStringList rejected = {
        "",
        "2024-02-30",
        "2024-13-01",
        "2024-1-5",
        "2024/01/02",
        "2024-01-02x",
        "2024-01-02T",
        "2024-01-02 25:00",
        "24:00",
        "7:05",
        "07:05:",
        "07:05:09.",
        "10:20 ",
        "2024-01-02 10:20 +02:00",
        "2024-01-02 10:20+2",
        "１２:３４",
    };
    for (const QString& text : rejected)
        EXPECT_FALSE(parseIsoDateTime(text).isValid()) << text.toStdString();
}

} // namespace
} // namespace tabulor::test
