// listfile.cpp: retried record reads and the start of a rewrite through a temporary file.
#include "diagnostics/listfile.h"

static const int kReadAttempts = 3;

DWORD ReadListRecord(HANDLE file, void *record, DWORD size)
{
    for (int attempt = 0; attempt < kReadAttempts; attempt++) {
        DWORD got = 0;
        if (ReadFile(file, record, size, &got, nullptr))
            return got;
    }
    return 0;
}

bool OpenForRewrite(const WCHAR *path, const WCHAR *temp, HANDLE *in, HANDLE *out)
{
    *in = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (*in == INVALID_HANDLE_VALUE)
        return false;
    *out = CreateFileW(temp, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (*out == INVALID_HANDLE_VALUE) {
        CloseHandle(*in);
        return false;
    }
    return true;
}
