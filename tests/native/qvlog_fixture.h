// qvlog_fixture.h: the months both builds' qvlog tests read, as bytes; no Windows header.
#pragma once

#include <stdint.h>
#include <stdio.h>

#include <string>
#include <vector>

#include "tools/qvlog/qvlog.h"

typedef std::vector<unsigned char> LogBytes;

inline LogBytes LogRecord(int day, int hour, uint32_t received, uint32_t transmitted)
{
    LogBytes r(12, 0);
    r[0] = (unsigned char)day;
    r[1] = (unsigned char)hour;
    for (int i = 0; i < 4; i++) {
        r[4 + i] = (unsigned char)(received >> (8 * i));
        r[8 + i] = (unsigned char)(transmitted >> (8 * i));
    }
    return r;
}

inline LogBytes operator+(LogBytes a, const LogBytes &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// February 2026, sound: its last hour holds a received field one short of
// 2^32, so the turn of the month sits next to the widest field.
inline LogBytes February2026()
{
    return LogRecord(1, 0, 1000, 2000) + LogRecord(28, 23, 4294967295u, 1);
}

// March 2026: hour 5 of day 1 twice, a field near 2^32, and a record cut
// after 5 bytes with two records appended behind it.
inline LogBytes March2026()
{
    LogBytes cut = LogRecord(3, 1, 0x10, 0);
    cut.resize(5);
    return LogRecord(1, 0, 100, 200) + LogRecord(1, 5, 300, 400) + LogRecord(2, 10, 4294967000u, 50) +
           LogRecord(1, 5, 7, 8) + cut + LogRecord(3, 2, 1000, 1000) + LogRecord(31, 23, 5, 6);
}

struct QvlogResult {
    int status;
    std::string out, err;
};

// qvlog run in-process with these words after the program's name.
inline QvlogResult RunQvlogWords(std::vector<std::string> words)
{
    words.insert(words.begin(), "qvlog");
    std::vector<char *> argv;
    for (auto &w : words)
        argv.push_back(&w[0]);
    FILE *files[2] = {tmpfile(), tmpfile()};
    QvlogResult r = {RunQvlog((int)argv.size(), argv.data(), files[0], files[1]), "", ""};
    std::string *texts[2] = {&r.out, &r.err};
    for (int i = 0; i < 2; i++) {
        rewind(files[i]);
        for (int c; (c = fgetc(files[i])) != EOF;)
            texts[i]->push_back((char)c);
        fclose(files[i]);
    }
    return r;
}
