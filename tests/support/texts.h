#ifndef TEXTS_H
#define TEXTS_H

#include <QtCore/QString>

/// Lets expected texts stand as they read, quotes included: R"(Source.getActiveSource("main") -> null)"_s
inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

#endif
