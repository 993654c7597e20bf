#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace tabulor::test {

namespace {

QString fromEnvironment(const char* variable, const QString& name)
{
    const QString dir = qEnvironmentVariable(variable);
    EXPECT_FALSE(dir.isEmpty()) << variable << " is not set; run the tests through ctest";
    return name.isEmpty() ? dir : QDir(dir).filePath(name);
}

} // namespace

QString testDataPath(const QString& name) { return fromEnvironment("TABULOR_TEST_DATA", name); }
QString sharedDataPath(const QString& name) { return fromEnvironment("TABULOR_SHARED_DATA", name); }
QString samplePath(const QString& name) { return fromEnvironment("TABULOR_SAMPLE_DIR", name); }
QString toolPath() { return fromEnvironment("TABULOR_TOOL", QString()); }

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QString copyInto(const QTemporaryDir& dir, const QString& path)
{
    const QString copy = dir.filePath(QFileInfo(path).fileName());
    QFile::remove(copy);
    EXPECT_TRUE(QFile::copy(path, copy)) << path.toStdString();
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    return copy;
}

} // namespace tabulor::test
