#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace tabulor::test {

struct ProgramRun
{
    int status = -1; // the exit status; -1 when the program crashed or did not end
    QString out;
    QString err;
};

// Runs a program to its end (two minutes at most). By default it gets this process's
// environment, with TABULOR_SETTINGS pointed at a file that does not exist, so that no user
// settings leak into the results.
ProgramRun runProgram(const QString& program, const QStringList& arguments,
                      QProcessEnvironment environment = QProcessEnvironment());

} // namespace tabulor::test
