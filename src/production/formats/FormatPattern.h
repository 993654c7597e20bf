#pragma once

#include <QString>

#include <memory>

namespace tabulor {

struct FormatProgram;

// A pattern of the locale written in the display-format language ("m/d/yyyy", "h:nn:ss AMPM"),
// compiled when it is set, so that the named formats and date codes that show it compile
// nothing however many values they format. A copy shares the compiled program.
class FormatPattern
{
public:
    FormatPattern(); // the empty pattern
    FormatPattern& operator=(const QString& text);

    const QString& text() const;
    const FormatProgram& program() const { return *m_program; }

private:
    std::shared_ptr<const FormatProgram> m_program;
};

} // namespace tabulor
