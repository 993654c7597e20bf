#pragma once

#include "production/pages/DisplayList.h"

#include <QImage>
#include <QString>
#include <QStringList>

namespace tabulor::test {

// Runs one of the PDF command-line tools and returns what it printed. A tool that is not
// installed, or that fails, fails the calling test.
QString runTool(const QString& program, const QStringList& arguments, int* exitCode = nullptr);

// The text of a PDF (or of one page of it) as pdftotext lays it out.
QString pdfText(const QString& pdf, int page = 0);
// pdfinfo's value for key ("Pages", "Title", "Page    1 size").
QString pdfInfo(const QString& pdf, const QString& key);
// One page rendered at the given resolution.
QImage renderPage(const QString& pdf, int page, int dpi);
// qpdf --check's complaints, empty when the file is sound.
QString qpdfProblems(const QString& pdf);

// Display list building blocks, lengths in twips.
FontSpec font(const QString& family, double size = 10, bool bold = false, bool italic = false);
TextRun text(double x, double y, const QString& text, const FontSpec& font,
             QColor color = Qt::black);
PageDisplayList page(double width = 11906, double height = 16838); // A4

} // namespace tabulor::test
