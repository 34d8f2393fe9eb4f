// files.cpp: qvlog's files, folders and date through the C library, on Linux and Windows alike.
#include "tools/qvlog/files.h"

#include <dirent.h>
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>

ReadResult ReadWholeFile(const std::string &path, size_t limit, std::vector<unsigned char> *bytes,
                         std::string *why)
{
    bytes->clear();
    struct stat st;
    if (stat(path.c_str(), &st) != 0) {
        if (errno == ENOENT)
            return READ_MISSING;
        *why = strerror(errno);
        return READ_FAILED;
    }
    if (S_ISDIR(st.st_mode)) {
        *why = "a folder, not a log file";
        return READ_FAILED;
    }
    FILE *f = fopen(path.c_str(), "rb");
    if (!f) {
        *why = strerror(errno);
        return READ_FAILED;
    }
    unsigned char buffer[65536];
    bool failed = false;
    while (bytes->size() < limit) {
        size_t want = std::min(sizeof buffer, limit - bytes->size());
        size_t got = fread(buffer, 1, want, f);
        bytes->insert(bytes->end(), buffer, buffer + got);
        if (got < want) {
            failed = ferror(f) != 0;
            break;
        }
    }
    fclose(f);
    if (failed) {
        *why = "read error";
        return READ_FAILED;
    }
    return READ_OK;
}

bool WriteWholeFile(const std::string &path, const std::vector<unsigned char> &bytes)
{
    FILE *f = fopen(path.c_str(), "wb");
    if (!f)
        return false;
    bool ok = bytes.empty() || fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return fclose(f) == 0 && ok;
}

bool IsFolder(const std::string &path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool PathExists(const std::string &path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

bool ListFolder(const std::string &folder, std::vector<std::string> *names)
{
    names->clear();
    DIR *dir = opendir(folder.c_str());
    if (!dir)
        return false;
    while (struct dirent *entry = readdir(dir))
        names->push_back(entry->d_name);
    closedir(dir);
    std::sort(names->begin(), names->end());
    return true;
}

std::string JoinPath(const std::string &folder, const std::string &name)
{
#ifdef _WIN32
    const char *separators = "\\/";
    const char separator = '\\';
#else
    const char *separators = "/";
    const char separator = '/';
#endif
    if (folder.empty() || strchr(separators, folder.back()))
        return folder + name;
    return folder + separator + name;
}

std::string BaseName(const std::string &path)
{
#ifdef _WIN32
    size_t at = path.find_last_of("\\/:");
#else
    size_t at = path.find_last_of('/');
#endif
    return at == std::string::npos ? path : path.substr(at + 1);
}

void LocalToday(int *year, int *month, int *day)
{
    time_t now = time(nullptr);
    struct tm *t = localtime(&now);
    *year = t->tm_year + 1900;
    *month = t->tm_mon + 1;
    *day = t->tm_mday;
}
