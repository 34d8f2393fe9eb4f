// listparse.h: the records of the host list and the safe list; no Windows header, so it also builds natively.
#pragma once

#include <stddef.h>
#include <wchar.h>

#define HOST_RECORD_CHARS 100                       // a host list record: 100 UTF-16 characters
#define HOST_RECORD_BYTES (2 * HOST_RECORD_CHARS)
#define SAFE_RECORD_BYTES 6                         // a safe list record: one MAC address

// Both lists are read a record at a time into one buffer kept for the whole
// file and zeroed before the first read, so a short last record keeps the
// tail of the record before it.

// The host name a host list record holds: UTF-16LE up to its terminator; a
// record without one ends at its last character, which is dropped. `text`
// has HOST_RECORD_CHARS characters.
void HostRecordText(const unsigned char *record, wchar_t *text);

// The record AddHost appends for `host`: its first 99 characters, the
// terminator, zeros after it.
void HostRecordBytes(const wchar_t *host, unsigned char *record);

// Host names are the same when they differ only in the case of A-Z (names
// and dotted addresses are ASCII; other letters are compared as they stand).
bool SameHostName(const wchar_t *a, const wchar_t *b);

// A safe list record and a MAC address are the same when their 6 bytes are.
bool MacEquals(const unsigned char *a, const unsigned char *b);
