#pragma once

#include "production/data/DataSource.h"

#include <QString>

#include <memory>

namespace tabulor::test {

// The PostgreSQL server of this test run and the private ODBC configuration, set up once
// per test program (see ServerEnvironment.cpp).
struct Servers
{
    QString problem;         // why the servers are not there; empty when they are
    QString postgresAddress; // postgresql://report_reader@127.0.0.1:PORT/tabulor_sample
    int postgresPort = 0;
    QString odbcFolder;     // ODBCSYSINI: the drivers "Tabulor SQLite" and "Tabulor PostgreSQL"
    QString odbcSampleCopy; // the sample database behind the DSN "Sample"
};
const Servers& servers();

// Fails the current test when the servers are missing, naming what is wrong.
#define REQUIRE_SERVERS() ASSERT_EQ(servers().problem, QString()) << servers().problem.toStdString()

// Opens a database through the factory; fails the test with the message when it does not open.
std::unique_ptr<DataSource> openOrFail(const QString& name);

// Every row of a record source (at most rowLimit), read through a fresh cursor.
QList<QVariantList> readAll(DataSource& source, const QString& name,
                            std::optional<qint64> rowLimit = std::nullopt);

// A port on 127.0.0.1 that nothing listens on.
int closedPort();

} // namespace tabulor::test
