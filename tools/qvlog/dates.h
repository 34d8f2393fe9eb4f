// dates.h: the dates qvlog's command line takes; no Windows header, so it also builds natively for fuzzing.
#pragma once

struct QvlogDate {
    int year, month, day;
};

// "YYYY", "YYYY-MM" or "YYYY-MM-DD" by `parts` (1 to 3): a date of the
// calendar with a four-digit year, as the file names have, and nothing after
// it. The parts not given are 1.
bool ParseQvlogDate(const char *text, int parts, QvlogDate *date);
