#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

namespace tabulor {

// The text a display format builds, kept on the stack until it is complete, so that
// formatting a cell allocates nothing but its result.
class FormatOutput
{
public:
    FormatOutput& operator+=(char16_t c)
    {
        m_text.append(c);
        return *this;
    }
    FormatOutput& operator+=(QChar c) { return *this += c.unicode(); }
    FormatOutput& operator+=(QStringView text)
    {
        m_text.append(text.utf16(), text.size());
        return *this;
    }

    QString toString() const
    {
        return QString(reinterpret_cast<const QChar*>(m_text.constData()), m_text.size());
    }

private:
    QVarLengthArray<char16_t, 128> m_text;
};

} // namespace tabulor
