#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>

namespace tabulor::test {

// What the poppler tools read from a PDF. A tool that is missing or fails fails the test.
QString pdfText(const QString& pdf, int page = 0); // page 0: every page
int pdfPageCount(const QString& pdf);
QSizeF pdfPageSize(const QString& pdf); // of page 1, in points
// The box of the first occurrence of word on a page, in points; empty when it is not there.
QRectF pdfWordBox(const QString& pdf, int page, const QString& word);

} // namespace tabulor::test
