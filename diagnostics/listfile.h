// listfile.h: what the host list and the safe list share: a read that is retried, and the start of a rewrite.
#pragma once

#include <windows.h>

// Reads up to `size` bytes; a failed read is tried again, a few times. The
// bytes read (a short one leaves the rest of the buffer as it was), 0 at the
// end or when the reads keep failing.
DWORD ReadListRecord(HANDLE file, void *record, DWORD size);

// Opens the list for reading and creates its temporary companion for
// writing; false, nothing left open, when either fails.
bool OpenForRewrite(const WCHAR *path, const WCHAR *temp, HANDLE *in, HANDLE *out);
