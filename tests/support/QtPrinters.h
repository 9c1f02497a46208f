#pragma once

#include <ostream>

#include <QtCore/QString>

// Lets a failed expectation show text as text. Every test program includes it through its precompiled header.
inline void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}
