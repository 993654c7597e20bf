#include "PdfCheck.h"

#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace tabulor::test {

namespace {

QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted()) {
        ADD_FAILURE() << program.toStdString()
                      << " cannot be run (package poppler-utils; scripts/install-deps.sh)";
        return {};
    }
    process.waitForFinished(60000);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        ADD_FAILURE() << program.toStdString() << ' ' << arguments.join(u' ').toStdString() << ": "
                      << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString info(const QString& pdf, const QString& key)
{
    const QRegularExpression line(QStringLiteral("^%1:\\s*(.*)$").arg(key),
                                  QRegularExpression::MultilineOption);
    return line.match(run(QStringLiteral("pdfinfo"), {pdf})).captured(1).trimmed();
}

} // namespace

QString pdfText(const QString& pdf, int page)
{
    QStringList arguments{QStringLiteral("-layout")};
    if (page > 0)
        arguments << QStringLiteral("-f") << QString::number(page) << QStringLiteral("-l")
                  << QString::number(page);
    return run(QStringLiteral("pdftotext"), arguments << pdf << QStringLiteral("-"));
}

int pdfPageCount(const QString& pdf)
{
    return info(pdf, QStringLiteral("Pages")).toInt();
}

QSizeF pdfPageSize(const QString& pdf)
{
    // "595 x 842 pts (A4)"
    const QRegularExpressionMatch size =
        QRegularExpression(QStringLiteral("^([\\d.]+) x ([\\d.]+) pts"))
            .match(info(pdf, QStringLiteral("Page size")));
    return QSizeF(size.captured(1).toDouble(), size.captured(2).toDouble());
}

QRectF pdfWordBox(const QString& pdf, int page, const QString& word)
{
    const QString number = QString::number(page);
    const QString html =
        run(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), QStringLiteral("-f"), number,
                                          QStringLiteral("-l"), number, pdf, QStringLiteral("-")});
    const QRegularExpressionMatch box =
        QRegularExpression(QStringLiteral("<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" "
                                          "xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">%1</word>")
                               .arg(QRegularExpression::escape(word)))
            .match(html);
    if (!box.hasMatch())
        return {};
    return QRectF(QPointF(box.captured(1).toDouble(), box.captured(2).toDouble()),
                  QPointF(box.captured(3).toDouble(), box.captured(4).toDouble()));
}

} // namespace tabulor::test
