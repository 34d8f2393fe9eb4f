// png.h: writes a 24-bit image as PNG (stored, uncompressed) or BMP.
#pragma once

#include <windows.h>

// Pixels are top-down rows of BGRX (32-bit) as GetDIBits gives them.
bool WriteImageFile(const wchar_t *path, int width, int height, const unsigned char *bgrx);
