// files.h: what qvlog needs of the system: whole files, folder listings, today's date, the item's folder.
#pragma once

#include <string>
#include <vector>

enum ReadResult { READ_OK, READ_MISSING, READ_FAILED };

// Reads at most `limit` bytes of a file; READ_FAILED with a reason for a
// folder, a file that cannot be opened or read.
ReadResult ReadWholeFile(const std::string &path, size_t limit, std::vector<unsigned char> *bytes,
                         std::string *why);
bool WriteWholeFile(const std::string &path, const std::vector<unsigned char> &bytes);
bool IsFolder(const std::string &path);
bool PathExists(const std::string &path);
// The names in a folder, sorted; false when it cannot be listed.
bool ListFolder(const std::string &folder, std::vector<std::string> *names);
std::string JoinPath(const std::string &folder, const std::string &name);
std::string BaseName(const std::string &path);
void LocalToday(int *year, int *month, int *day);

// The folder the item keeps its logs in on this system: its InstallDir
// registry value, else the item's default under Program Files when that
// exists. Always false on a system without the item's registry.
bool ItemLogFolder(std::string *folder);
