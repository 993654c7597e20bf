#include "ProgramRun.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace tabulor::test {

ProgramRun runProgram(const QString& program, const QStringList& arguments,
                      QProcessEnvironment environment)
{
    if (environment.isEmpty()) {
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TABULOR_SETTINGS"),
                           QStringLiteral("/nonexistent/tabulor.ini"));
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    const bool finished = process.waitForFinished(120000);
    EXPECT_TRUE(finished) << program.toStdString() << ": " << process.errorString().toStdString();
    return {finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace tabulor::test
