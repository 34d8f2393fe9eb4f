// qvlog.h: the traffic log reader's commands, callable from its main and from tests.
#pragma once

#include <stdio.h>

#include <string>
#include <vector>

// Exit statuses: all well, the data is damaged (or a check found a fault),
// the command line is wrong.
enum { QVLOG_OK = 0, QVLOG_DAMAGED = 1, QVLOG_USAGE = 2 };

// One row of a summary: a day, an hour, a month or "today"; figures in bytes
// exactly as the usage dialog's series hold them.
struct QvlogRow {
    std::string label;    // for people: "Mar 07, 2026", "05:00", "Mar 2026"
    std::string period;   // for scripts: "2026-03-07", "2026-03-07T05", "2026-03"
    double received, transmitted;
};

// The days of a month as the usage dialog's daily view holds them (slots
// 1 to the month's length), and its total as the CSV export's total row of
// that whole month has it, read from `folder`. Returns QVLOG_OK,
// QVLOG_DAMAGED when the file is not sound (the figures are still the
// dialog's), or QVLOG_USAGE when it cannot be read; `err` gets why.
int QvlogMonthDays(const std::string &folder, int year, int month, std::vector<QvlogRow> *rows, QvlogRow *total,
                   FILE *err);

// Runs one command line (argv[0] is the program) and returns its exit status.
int RunQvlog(int argc, char **argv, FILE *out, FILE *err);
