#include "PdfTools.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tabulor::test {

QString runTool(const QString& program, const QStringList& arguments, int* exitCode)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted()) {
        ADD_FAILURE() << program.toStdString()
                      << " cannot be run; scripts/install-deps.sh installs it";
        return {};
    }
    process.waitForFinished(60000);
    const QString output = QString::fromUtf8(process.readAllStandardOutput());
    if (exitCode)
        *exitCode = process.exitCode();
    else if (process.exitCode() != 0)
        ADD_FAILURE() << program.toStdString() << " " << arguments.join(' ').toStdString()
                      << " failed: " << process.readAllStandardError().toStdString();
    return output;
}

QString pdfText(const QString& pdf, int page)
{
    QStringList arguments{QStringLiteral("-layout"), QStringLiteral("-enc"),
                          QStringLiteral("UTF-8")};
    if (page > 0)
        arguments << QStringLiteral("-f") << QString::number(page) << QStringLiteral("-l")
                  << QString::number(page);
    arguments << pdf << QStringLiteral("-");
    return runTool(QStringLiteral("pdftotext"), arguments);
}

QString pdfInfo(const QString& pdf, const QString& key)
{
    const QString output =
        runTool(QStringLiteral("pdfinfo"), {QStringLiteral("-f"), QStringLiteral("1"),
                                            QStringLiteral("-l"), QStringLiteral("999"), pdf});
    for (const QString& line : output.split(QLatin1Char('\n'))) {
        if (line.startsWith(key + QLatin1Char(':')))
            return line.mid(key.size() + 1).trimmed();
    }
    return {};
}

QImage renderPage(const QString& pdf, int page, int dpi)
{
    QTemporaryDir dir;
    const QString prefix = dir.filePath(QStringLiteral("page"));
    runTool(QStringLiteral("pdftoppm"),
            {QStringLiteral("-png"), QStringLiteral("-singlefile"), QStringLiteral("-r"),
             QString::number(dpi), QStringLiteral("-f"), QString::number(page),
             QStringLiteral("-l"), QString::number(page), pdf, prefix});
    return QImage(prefix + QStringLiteral(".png")).convertToFormat(QImage::Format_RGB32);
}

QString qpdfProblems(const QString& pdf)
{
    int exitCode = -1;
    const QString output =
        runTool(QStringLiteral("qpdf"), {QStringLiteral("--check"), pdf}, &exitCode);
    if (exitCode == 0 && !output.contains(QStringLiteral("WARNING")) &&
        output.contains(QStringLiteral("No syntax or stream encoding errors found")))
        return {};
    return output.isEmpty() ? QStringLiteral("qpdf exited with %1").arg(exitCode) : output;
}

FontSpec font(const QString& family, double size, bool bold, bool italic)
{
    FontSpec fontSpec;
    fontSpec.family = family;
    fontSpec.pointSize = size;
    fontSpec.bold = bold;
    fontSpec.italic = italic;
    return fontSpec;
}

TextRun text(double x, double y, const QString& text, const FontSpec& font, QColor color)
{
    return TextRun{QPointF(x, y), text, font, color};
}

PageDisplayList page(double width, double height)
{
    return PageDisplayList{QSizeF(width, height), {}};
}

} // namespace tabulor::test
