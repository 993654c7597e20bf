#include "production/formats/FormatPattern.h"

#include "production/formats/FormatProgram.h"

namespace tabulor {

namespace {

// The empty pattern's program, shared by every locale: it never changes.
const std::shared_ptr<const FormatProgram>& emptyProgram()
{
    static const std::shared_ptr<const FormatProgram> program = compileFormat(QString());
    return program;
}

} // namespace

FormatPattern::FormatPattern() : m_program(emptyProgram()) {}

FormatPattern& FormatPattern::operator=(const QString& text)
{
    m_program = compileFormat(text);
    return *this;
}

const QString& FormatPattern::text() const
{
    return m_program->source;
}

} // namespace tabulor
