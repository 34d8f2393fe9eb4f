// text.cpp: bounded wide-text formatting and copying for both C runtimes.
#include "platform/text.h"

#include <stdarg.h>
#include <stdio.h>

int FormatText(wchar_t *text, size_t size, const wchar_t *format, ...)
{
    if (size == 0)
        return -1;
    va_list args;
    va_start(args, format);
    int n = _vsnwprintf(text, size, format, args);
    va_end(args);
    if (n < 0 || (size_t)n >= size) {
        text[size - 1] = 0;
        return -1;
    }
    return n;
}

wchar_t *CopyText(wchar_t *to, const wchar_t *from, size_t size)
{
    if (size == 0)
        return to;
    size_t i = 0;
    for (; i + 1 < size && from[i]; i++)
        to[i] = from[i];
    to[i] = 0;
    return to;
}
