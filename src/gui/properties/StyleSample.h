#pragma once

#include "commands/TextParts.h"
#include "definition/ReportStyle.h"
#include "production/pages/FontCatalog.h"

#include <QWidget>

namespace tabulor {

// One row of the report as it prints in a style: its font and colours, the spaces before and
// after it and its rules, with texts at the left, in the centre and at the right.
class StyleSample : public QWidget
{
    Q_OBJECT
    // The format string of the Styles tab's sample, ";|" followed by the sample's text: a
    // string file replaces it.
    Q_PROPERTY(QString sampleFormat READ sampleFormat WRITE setSampleFormat)

public:
    explicit StyleSample(QWidget* parent = nullptr);

    void setStyle(const ReportStyle& style);
    void setTexts(const TextParts& texts);
    const TextParts& texts() const { return m_texts; }

    QString sampleFormat() const { return m_sampleFormat; }
    // Shows the format's text at the left.
    void setSampleFormat(const QString& format);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ReportStyle m_style;
    TextParts m_texts;
    QString m_sampleFormat;
    FontCatalog m_fonts;
};

} // namespace tabulor
