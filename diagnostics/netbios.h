// netbios.h: the NetBIOS node-status query and the reading of its reply; the safe list's MAC text (no Windows header).
#pragma once

#include <stddef.h>
#include <wchar.h>

#define NODE_STATUS_REQUEST_SIZE 50
#define NETBIOS_NAME_SIZE 128

// The node-status request for the wildcard name "*", as sent to UDP port 137.
extern const unsigned char NodeStatusRequest[NODE_STATUS_REQUEST_SIZE];

// Reads the first name of a node-status reply of `length` bytes into `name`
// (NETBIOS_NAME_SIZE bytes): at most 15 characters, trailing blanks dropped
// but never the first character. False, `name` untouched, when the reply is
// too short for the names it claims.
bool ReadNodeStatusName(const unsigned char *reply, long length, char *name);

// The list's MAC text "00:1A:2B:3C:4D:5E" as 6 bytes. Only upper-case digits
// are understood, as the list writes them. An empty or short text is a
// missing MAC: false, and `mac` all zero.
bool ParseMacText(const wchar_t *text, unsigned char *mac);
