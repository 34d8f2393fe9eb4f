// text.h: bounded wide-text formatting and copying that both the device's and the desktop's C runtimes have.
#pragma once

#include <stddef.h>
#include <wchar.h>

// Formats into `text` of `size` characters, always terminated (cut where it
// does not fit); the characters written, or -1 when the text was cut. The
// device's swprintf takes no size and its _snwprintf leaves a full buffer
// open, so every bounded format goes through here. Microsoft's conversions:
// %s and %ls are wide, %hs is single-byte.
int FormatText(wchar_t *text, size_t size, const wchar_t *format, ...);

// Copies at most size - 1 characters and terminates, as lstrcpynW does on a
// desktop (the device has no lstrcpynW). Returns `to`.
wchar_t *CopyText(wchar_t *to, const wchar_t *from, size_t size);
