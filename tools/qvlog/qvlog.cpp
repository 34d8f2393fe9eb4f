// qvlog.cpp: summaries, CSV and JSON of the monthly traffic logs, and the check and repair of damaged ones.
#include "tools/qvlog/qvlog.h"

#include <stdarg.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <set>

#include "tools/qvlog/dates.h"
#include "tools/qvlog/files.h"
#include "tools/qvlog/logcheck.h"
#include "trafficlog/logformat.h"
#include "trafficlog/logparse.h"

namespace {

// The usage dialog's reader stops after this many records; so does qvlog.
const size_t kReadLimit = (size_t)(1 << 20) * TRAFFIC_RECORD_BYTES;
const int kSummaryMonths = 3;

const char kUsage[] =
    "usage: qvlog [COMMAND] [OPTIONS]\n"
    "Reads Quorvane's monthly traffic logs (YYYYMM.log).\n"
    "\n"
    "commands:\n"
    "  (none)              today, this month and the two before it\n"
    "  days [YYYY-MM]      one row per day of the month (default: this month)\n"
    "  hours [YYYY-MM-DD]  one row per hour of the day (default: today)\n"
    "  months [YYYY]       one row per month of the year (default: this year)\n"
    "  check [FILE...]     report what is wrong with the files (default: every log in the folder);\n"
    "                      exit 0 when all are sound, 1 otherwise\n"
    "  repair FILE         write a mended copy as FILE.repaired: records realigned after a cut,\n"
    "                      duplicate hours added together, invalid records dropped\n"
    "\n"
    "options:\n"
    "  --dir FOLDER        the folder of the logs. On Windows the default is the item's own:\n"
    "                      its InstallDir registry value, else Program Files\\Ostrik\\Quorvane;\n"
    "                      elsewhere --dir is needed\n"
    "  --csv, --json       machine-readable output, figures as plain byte counts\n"
    "  --top N             only the N busiest days, hours or months\n"
    "  --in-place          repair: mend FILE itself, keeping the original as FILE.bak\n"
    "  --today YYYY-MM-DD  take that day as today\n"
    "  --help              this text\n"
    "\n"
    "Figures are the usage dialog's, in its units (KB, MB, GB of 1024).\n"
    "exit status: 0 fine, 1 damaged or unreadable logs, 2 a wrong command line or folder\n";

enum Format { TEXT, CSV, JSON };

struct Options {
    std::string command, dir;
    std::vector<std::string> args;
    Format format;
    int top;   // 0: every row
    bool inPlace;
    int year, month, day;   // today
};

std::string Printf(const char *format, ...) __attribute__((format(printf, 1, 2)));
std::string Printf(const char *format, ...)
{
    char text[512];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

// "1 record", "2 records".
std::string Many(size_t n, const char *noun)
{
    return Printf("%lu %s%s", (unsigned long)n, noun, n == 1 ? "" : "s");
}

std::string ByteText(double value)
{
    char text[64];
    return FormatByteCountText(value, text, sizeof text);
}

// What reading one month's file found.
struct MonthFile {
    bool present;
    std::vector<unsigned char> bytes;
};

std::string Describe(const LogCheckReport &r);

// Reads a month's log; a missing file is a month without traffic. Damage is
// told once per file; the figures stay what the usage dialog reads.
int LoadMonth(const std::string &folder, int year, int month, MonthFile *file, FILE *err)
{
    char name[TRAFFIC_LOG_NAME_CHARS];
    TrafficLogFileName(year, month, name, sizeof name);
    std::string path = JoinPath(folder, name), why;
    file->present = false;
    switch (ReadWholeFile(path, kReadLimit, &file->bytes, &why)) {
    case READ_MISSING:
        return QVLOG_OK;
    case READ_FAILED:
        fprintf(err, "qvlog: %s: cannot be read: %s\n", path.c_str(), why.c_str());
        return QVLOG_DAMAGED;
    case READ_OK:
        break;
    }
    file->present = true;
    LogCheckReport report;
    CheckTrafficLog(file->bytes.data(), file->bytes.size(), year, month, &report);
    if (LogIsSound(report))
        return QVLOG_OK;
    fprintf(err,
            "qvlog: %s: damaged (%s); its figures are read as the usage dialog reads them; "
            "see qvlog check and qvlog repair\n",
            path.c_str(), Describe(report).c_str());
    return QVLOG_DAMAGED;
}

void ReadSeries(const MonthFile &file, int mode, int day, double *transmitted, double *received)
{
    double maximum = 0;
    for (int i = 0; i < SERIES_SLOTS; i++)
        transmitted[i] = received[i] = 0;
    TrafficLogView view = {mode, day, transmitted, received, &maximum, {0}};
    if (file.present)
        AddTrafficLogBytes(&view, file.bytes.data(), file.bytes.size());
}

std::string DayLabel(int year, int month, int day)
{
    return Printf("%s %02d, %04d", MonthAbbrevText(month), day, year);
}

std::string MonthLabel(int year, int month)
{
    return Printf("%s %04d", MonthAbbrevText(month), year);
}

int Worse(int a, int b)
{
    return a > b ? a : b;
}

// The month's total as the CSV export writes it for the whole month: every
// record up to the month's last day, the first one from day 1 on. Only a
// damaged file makes it differ from the sum of the days.
void ExportTotal(const MonthFile &file, int year, int month, QvlogRow *total)
{
    total->received = total->transmitted = 0;
    double tx[SERIES_SLOTS] = {}, rx[SERIES_SLOTS] = {};
    bool first = true;
    TrafficExportView view = {1, DaysInMonth(year, month), true, &first, tx, rx,
                              &total->transmitted, &total->received, {0}};
    if (file.present)
        AddExportMonthBytes(&view, file.bytes.data(), file.bytes.size());
}

int MonthDays(const std::string &folder, int year, int month, std::vector<QvlogRow> *rows, QvlogRow *total,
              FILE *err)
{
    MonthFile file;
    int status = LoadMonth(folder, year, month, &file, err);
    double tx[SERIES_SLOTS], rx[SERIES_SLOTS];
    ReadSeries(file, 0, 0, tx, rx);
    rows->clear();
    for (int d = 1; d <= DaysInMonth(year, month); d++) {
        QvlogRow row = {DayLabel(year, month, d), Printf("%04d-%02d-%02d", year, month, d), rx[d], tx[d]};
        rows->push_back(row);
    }
    total->label = MonthLabel(year, month);
    total->period = Printf("%04d-%02d", year, month);
    ExportTotal(file, year, month, total);
    return status;
}

QvlogRow Sum(const std::vector<QvlogRow> &rows, const std::string &label, const std::string &period)
{
    QvlogRow total = {label, period, 0, 0};
    for (size_t i = 0; i < rows.size(); i++) {
        total.received += rows[i].received;
        total.transmitted += rows[i].transmitted;
    }
    return total;
}

// The busiest first (by received plus transmitted), earlier first among
// equals; rows without traffic are left out.
void KeepTop(std::vector<QvlogRow> *rows, int top)
{
    if (top <= 0)
        return;
    std::vector<QvlogRow> busy;
    for (size_t i = 0; i < rows->size(); i++)
        if ((*rows)[i].received + (*rows)[i].transmitted > 0)
            busy.push_back((*rows)[i]);
    std::stable_sort(busy.begin(), busy.end(), [](const QvlogRow &a, const QvlogRow &b) {
        return a.received + a.transmitted > b.received + b.transmitted;
    });
    if (busy.size() > (size_t)top)
        busy.resize(top);
    *rows = busy;
}

std::string JsonString(const std::string &text)
{
    std::string out = "\"";
    for (size_t i = 0; i < text.size(); i++) {
        unsigned char c = text[i];
        if (c == '"' || c == '\\')
            out += std::string("\\") + (char)c;
        else if (c < 0x20)
            out += Printf("\\u%04x", c);
        else
            out += (char)c;
    }
    return out + "\"";
}

// Plain byte counts: sums of 32-bit fields, exact in a double.
std::string Count(double value)
{
    return Printf("%.0f", value);
}

void PrintRows(const Options &o, const std::string &title, const char *view, const std::string &folder,
               const std::vector<QvlogRow> &rows, const QvlogRow &total, FILE *out)
{
    if (o.format == CSV) {
        fprintf(out, "\"period\",\"received\",\"transmitted\",\"total\"\n");
        std::vector<QvlogRow> all = rows;
        all.push_back(total);
        for (size_t i = 0; i < all.size(); i++)
            fprintf(out, "\"%s\",\"%s\",\"%s\",\"%s\"\n", all[i].period.c_str(), Count(all[i].received).c_str(),
                    Count(all[i].transmitted).c_str(), Count(all[i].received + all[i].transmitted).c_str());
        return;
    }
    if (o.format == JSON) {
        fprintf(out, "{\n  \"view\": %s,\n  \"folder\": %s,\n  \"rows\": [", JsonString(view).c_str(),
                JsonString(folder).c_str());
        for (size_t i = 0; i < rows.size(); i++)
            fprintf(out, "%s\n    {\"period\": %s, \"received\": %s, \"transmitted\": %s, \"total\": %s}",
                    i ? "," : "", JsonString(rows[i].period).c_str(), Count(rows[i].received).c_str(),
                    Count(rows[i].transmitted).c_str(), Count(rows[i].received + rows[i].transmitted).c_str());
        fprintf(out, "%s],\n  \"total\": {\"period\": %s, \"received\": %s, \"transmitted\": %s, \"total\": %s}\n}\n",
                rows.empty() ? "" : "\n  ", JsonString(total.period).c_str(), Count(total.received).c_str(),
                Count(total.transmitted).c_str(), Count(total.received + total.transmitted).c_str());
        return;
    }
    // Columns as wide as their widest text: the label left, figures right.
    std::vector<std::vector<std::string> > cells;
    std::vector<QvlogRow> all = rows;
    all.push_back(total);
    const char *heads[4] = {"", "Received", "Transmitted", "Total"};
    size_t width[4];
    for (int c = 0; c < 4; c++)
        width[c] = strlen(heads[c]);
    for (size_t i = 0; i < all.size(); i++) {
        std::vector<std::string> line;
        line.push_back(all[i].label);
        line.push_back(ByteText(all[i].received));
        line.push_back(ByteText(all[i].transmitted));
        line.push_back(ByteText(all[i].received + all[i].transmitted));
        for (int c = 0; c < 4; c++)
            width[c] = std::max(width[c], line[c].size());
        cells.push_back(line);
    }
    fprintf(out, "%s\n", title.c_str());
    fprintf(out, "%-*s  %*s  %*s  %*s\n", (int)width[0], heads[0], (int)width[1], heads[1], (int)width[2],
            heads[2], (int)width[3], heads[3]);
    for (size_t i = 0; i < cells.size(); i++) {
        if (i + 1 == cells.size())
            fprintf(out, "%s\n", std::string(width[0] + width[1] + width[2] + width[3] + 6, '-').c_str());
        fprintf(out, "%-*s  %*s  %*s  %*s\n", (int)width[0], cells[i][0].c_str(), (int)width[1],
                cells[i][1].c_str(), (int)width[2], cells[i][2].c_str(), (int)width[3], cells[i][3].c_str());
    }
}

int Usage(FILE *err, const std::string &why)
{
    fprintf(err, "qvlog: %s\n(qvlog --help tells how to use it)\n", why.c_str());
    return QVLOG_USAGE;
}

// The folder of the logs: --dir, else the item's own where this system has it.
int ChooseFolder(const Options &o, std::string *folder, FILE *err)
{
    if (!o.dir.empty())
        *folder = o.dir;
    else if (!ItemLogFolder(folder))
        return Usage(err, "no log folder: give one with --dir FOLDER");
    if (!IsFolder(*folder)) {
        fprintf(err, "qvlog: %s: %s\n", folder->c_str(), PathExists(*folder) ? "not a folder" : "no such folder");
        return QVLOG_USAGE;
    }
    return QVLOG_OK;
}

int DateArgument(const Options &o, int parts, const char *shape, QvlogDate *date, FILE *err)
{
    if (o.args.size() > 1)
        return Usage(err, Printf("%s takes one date at most", o.command.c_str()));
    if (o.args.empty())
        return QVLOG_OK;
    if (!ParseQvlogDate(o.args[0].c_str(), parts, date))
        return Usage(err, Printf("not a date of the calendar: \"%s\" (want %s)", o.args[0].c_str(), shape));
    return QVLOG_OK;
}

int Days(const Options &o, const std::string &folder, FILE *out, FILE *err)
{
    QvlogDate date = {o.year, o.month, o.day};
    if (DateArgument(o, 2, "YYYY-MM", &date, err))
        return QVLOG_USAGE;
    std::vector<QvlogRow> rows;
    QvlogRow total;
    int status = MonthDays(folder, date.year, date.month, &rows, &total, err);
    total.label = "Total for " + total.label;
    KeepTop(&rows, o.top);
    PrintRows(o, "Daily traffic for " + MonthLabel(date.year, date.month), "days", folder, rows, total, out);
    return status;
}

int Hours(const Options &o, const std::string &folder, FILE *out, FILE *err)
{
    QvlogDate date = {o.year, o.month, o.day};
    if (DateArgument(o, 3, "YYYY-MM-DD", &date, err))
        return QVLOG_USAGE;
    MonthFile file;
    int status = LoadMonth(folder, date.year, date.month, &file, err);
    double tx[SERIES_SLOTS], rx[SERIES_SLOTS];
    ReadSeries(file, HOURLY_MODE, date.day, tx, rx);
    std::vector<QvlogRow> rows;
    std::string day = Printf("%04d-%02d-%02d", date.year, date.month, date.day);
    for (int h = 0; h < 24; h++) {
        QvlogRow row = {Printf("%02d:00", h), Printf("%sT%02d", day.c_str(), h), rx[h], tx[h]};
        rows.push_back(row);
    }
    std::string label = DayLabel(date.year, date.month, date.day);
    QvlogRow total = Sum(rows, "Total for " + label, day);
    KeepTop(&rows, o.top);
    PrintRows(o, "Hourly traffic for " + label, "hours", folder, rows, total, out);
    return status;
}

int Months(const Options &o, const std::string &folder, FILE *out, FILE *err)
{
    QvlogDate date = {o.year, o.month, o.day};
    if (DateArgument(o, 1, "YYYY", &date, err))
        return QVLOG_USAGE;
    std::vector<QvlogRow> rows, days;
    int status = QVLOG_OK;
    for (int m = 1; m <= 12; m++) {
        QvlogRow month;
        status = Worse(status, MonthDays(folder, date.year, m, &days, &month, err));
        rows.push_back(month);
    }
    QvlogRow total = Sum(rows, Printf("Total for %04d", date.year), Printf("%04d", date.year));
    KeepTop(&rows, o.top);
    PrintRows(o, Printf("Monthly traffic for %04d", date.year), "months", folder, rows, total, out);
    return status;
}

// Today, then this month and the ones before it, newest first.
int Summary(const Options &o, const std::string &folder, FILE *out, FILE *err)
{
    if (o.top > 0) {
        Options days = o;
        days.command = "days";
        return Days(days, folder, out, err);
    }
    std::vector<QvlogRow> rows, days;
    int status = QVLOG_OK, year = o.year, month = o.month;
    for (int i = 0; i < kSummaryMonths; i++) {
        QvlogRow total;
        status = Worse(status, MonthDays(folder, year, month, &days, &total, err));
        if (i == 0)
            rows.push_back(QvlogRow{"Today, " + DayLabel(year, month, o.day), days[o.day - 1].period,
                                    days[o.day - 1].received, days[o.day - 1].transmitted});
        rows.push_back(total);
        if (--month == 0) {
            month = 12;
            if (--year == 0)
                break;
        }
    }
    std::vector<QvlogRow> months(rows.begin() + 1, rows.end());
    QvlogRow total = Sum(months, Printf("Total of %d months", (int)months.size()), "total");
    PrintRows(o, "Traffic in " + folder, "summary", folder, rows, total, out);
    return status;
}

std::string Describe(const LogCheckReport &r)
{
    if (r.tooLarge)
        return Printf("%lu bytes, too large for a month's log", (unsigned long)r.size);
    if (r.size == 0)
        return "empty";
    std::vector<std::string> parts;
    if (!r.cuts.empty())
        parts.push_back(Printf("cut record at byte %lu", (unsigned long)r.cuts[0].offset));
    if (!r.outOfRange.empty())
        parts.push_back(Many(r.outOfRange.size(), "record") + " out of range");
    if (!r.duplicates.empty())
        parts.push_back(Many(r.duplicates.size(), "duplicate hour"));
    std::string text;
    for (size_t i = 0; i < parts.size(); i++)
        text += (i ? ", " : "") + parts[i];
    return text;
}

std::string RecordText(const LogCheckReport &r, size_t index)
{
    const LogRecordAt &at = r.records[index];
    return Printf("day %d hour %d at byte %lu", at.fields.day, at.fields.hour, (unsigned long)at.offset);
}

// Up to three examples of a finding, then how many more.
std::string Examples(const LogCheckReport &r, const std::vector<size_t> &which)
{
    std::string text;
    for (size_t i = 0; i < which.size() && i < 3; i++)
        text += (i ? "; " : "") + RecordText(r, which[i]);
    if (which.size() > 3)
        text += Printf("; %lu more", (unsigned long)(which.size() - 3));
    return text;
}

// The year and month a file's name gives; 0 and 0 (any day 1-31) otherwise.
void MonthOfFile(const std::string &path, int *year, int *month)
{
    if (!ParseTrafficLogFileName(BaseName(path).c_str(), year, month))
        *year = *month = 0;
}

// One named file, read and looked into; false (and why, on `out`, after
// `lead`) when it cannot be read.
bool ReadAndCheck(const std::string &path, const char *lead, FILE *out, std::vector<unsigned char> *bytes,
                  int *year, int *month, LogCheckReport *r)
{
    std::string why;
    ReadResult read = ReadWholeFile(path, LOG_CHECK_MAX_BYTES + 1, bytes, &why);
    if (read != READ_OK) {
        fprintf(out, "%s%s: cannot be read: %s\n", lead, path.c_str(), read == READ_MISSING ? "no such file" : why.c_str());
        return false;
    }
    MonthOfFile(path, year, month);
    CheckTrafficLog(bytes->data(), bytes->size(), *year, *month, r);
    return true;
}

int CheckOne(const std::string &path, FILE *out)
{
    std::vector<unsigned char> bytes;
    int year, month;
    LogCheckReport r;
    if (!ReadAndCheck(path, "", out, &bytes, &year, &month, &r))
        return QVLOG_DAMAGED;
    bool sound = LogIsSound(r);
    if (r.tooLarge || r.size == 0) {
        fprintf(out, "%s: %s: damaged\n", path.c_str(), Describe(r).c_str());
        return QVLOG_DAMAGED;
    }
    fprintf(out, "%s: %s, %s: %s\n", path.c_str(), Many(r.size, "byte").c_str(), Many(r.records.size(), "record").c_str(),
            sound ? "sound" : "damaged");
    if (year == 0)
        fprintf(out, "  the name is not YYYYMM.log: days 1-31 are taken as valid\n");
    for (size_t i = 0; i < r.cuts.size(); i++) {
        size_t after = 0;
        for (size_t k = 0; k < r.records.size(); k++)
            after += r.records[k].offset > r.cuts[i].offset;
        fprintf(out, "  cut record: %s at byte %lu; %s after it %s out of step by %s\n",
                Many(r.cuts[i].length, "byte").c_str(), (unsigned long)r.cuts[i].offset,
                Many(after, "record").c_str(), after == 1 ? "is" : "are", Many(r.cuts[i].length, "byte").c_str());
    }
    if (!r.outOfRange.empty())
        fprintf(out, "  out of range: %s (%s)\n", Many(r.outOfRange.size(), "record").c_str(),
                Examples(r, r.outOfRange).c_str());
    if (!r.duplicates.empty())
        fprintf(out, "  duplicate hours: %s (%s)\n", Many(r.duplicates.size(), "record").c_str(),
                Examples(r, r.duplicates).c_str());
    if (!r.outOfOrder.empty())
        fprintf(out, "  out of order: %s (%s); the clock went back, the readers do not mind\n",
                Many(r.outOfOrder.size(), "record").c_str(), Examples(r, r.outOfOrder).c_str());
    return sound ? QVLOG_OK : QVLOG_DAMAGED;
}

int Check(const Options &o, FILE *out, FILE *err)
{
    std::vector<std::string> paths = o.args;
    if (paths.empty()) {
        std::string folder;
        if (int status = ChooseFolder(o, &folder, err))
            return status;
        std::vector<std::string> names;
        if (!ListFolder(folder, &names)) {
            fprintf(err, "qvlog: %s: cannot be listed\n", folder.c_str());
            return QVLOG_USAGE;
        }
        int year, month;
        for (size_t i = 0; i < names.size(); i++)
            if (ParseTrafficLogFileName(names[i].c_str(), &year, &month))
                paths.push_back(JoinPath(folder, names[i]));
        if (paths.empty()) {
            fprintf(err, "qvlog: no monthly logs (YYYYMM.log) in %s\n", folder.c_str());
            return QVLOG_DAMAGED;
        }
    }
    int status = QVLOG_OK;
    for (size_t i = 0; i < paths.size(); i++)
        status = Worse(status, CheckOne(paths[i], out));
    return status;
}

int Repair(const Options &o, FILE *out, FILE *err)
{
    if (o.args.size() != 1)
        return Usage(err, "repair takes one file");
    const std::string &path = o.args[0];
    std::vector<unsigned char> bytes;
    int year, month;
    LogCheckReport r;
    if (!ReadAndCheck(path, "qvlog: ", err, &bytes, &year, &month, &r))
        return QVLOG_DAMAGED;
    if (r.tooLarge || r.size == 0) {
        fprintf(err, "qvlog: %s: %s: nothing to repair\n", path.c_str(), Describe(r).c_str());
        return QVLOG_DAMAGED;
    }
    LogRepairCounts counts;
    std::vector<unsigned char> mended = RepairTrafficLog(r, year, month, &counts);
    std::string target = path + ".repaired";
    if (o.inPlace) {
        std::string backup = path + ".bak";
        if (PathExists(backup)) {
            fprintf(err, "qvlog: %s exists already: move it away first, nothing was changed\n", backup.c_str());
            return QVLOG_DAMAGED;
        }
        if (!WriteWholeFile(backup, bytes)) {
            fprintf(err, "qvlog: %s: cannot be written, nothing was changed\n", backup.c_str());
            return QVLOG_DAMAGED;
        }
        target = path;
    }
    if (!WriteWholeFile(target, mended)) {
        fprintf(err, "qvlog: %s: cannot be written%s\n", target.c_str(),
                o.inPlace ? "; the original is in the .bak file" : "");
        return QVLOG_DAMAGED;
    }
    fprintf(out, "%s: %s kept, %s added into their first, %lu invalid dropped, %s dropped", path.c_str(),
            Many(counts.kept, "record").c_str(), Many(counts.merged, "duplicate").c_str(),
            (unsigned long)counts.dropped, Many(counts.cutBytes, "cut byte").c_str());
    if (counts.keptApart)
        fprintf(out, ", %s kept apart (their sum passes 2^32)", Many(counts.keptApart, "duplicate").c_str());
    fprintf(out, "\n  written to %s%s\n", target.c_str(), o.inPlace ? (", the original kept as " + path + ".bak").c_str() : "");
    return QVLOG_OK;
}

int ParseOptions(int argc, char **argv, Options *o, FILE *err)
{
    o->format = TEXT;
    o->top = 0;
    o->inPlace = false;
    LocalToday(&o->year, &o->month, &o->day);
    for (int i = 1; i < argc; i++) {
        std::string a = argv[i];
        bool hasValue = i + 1 < argc;
        if (a == "--dir" || a == "--top" || a == "--today") {
            if (!hasValue)
                return Usage(err, a + " needs a value");
            std::string v = argv[++i];
            if (a == "--dir") {
                o->dir = v;
            } else if (a == "--top") {
                char *end = nullptr;
                long n = strtol(v.c_str(), &end, 10);
                if (v.empty() || *end || n < 1 || n > 100000)
                    return Usage(err, "--top wants a whole number from 1");
                o->top = (int)n;
            } else {
                QvlogDate d;
                if (!ParseQvlogDate(v.c_str(), 3, &d))
                    return Usage(err, "not a date of the calendar: \"" + v + "\" (want YYYY-MM-DD)");
                o->year = d.year;
                o->month = d.month;
                o->day = d.day;
            }
        } else if (a == "--csv") {
            o->format = CSV;
        } else if (a == "--json") {
            o->format = JSON;
        } else if (a == "--in-place") {
            o->inPlace = true;
        } else if (a.size() > 1 && a[0] == '-') {
            return Usage(err, "unknown option " + a);
        } else if (o->command.empty()) {
            o->command = a;
        } else {
            o->args.push_back(a);
        }
    }
    return QVLOG_OK;
}

} // namespace

int QvlogMonthDays(const std::string &folder, int year, int month, std::vector<QvlogRow> *rows, QvlogRow *total,
                   FILE *err)
{
    return MonthDays(folder, year, month, rows, total, err);
}

int RunQvlog(int argc, char **argv, FILE *out, FILE *err)
{
    for (int i = 1; i < argc; i++) {
        if (!strcmp(argv[i], "--help") || !strcmp(argv[i], "-h")) {
            fputs(kUsage, out);
            return QVLOG_OK;
        }
    }
    Options o;
    if (int status = ParseOptions(argc, argv, &o, err))
        return status;
    if (o.inPlace && o.command != "repair")
        return Usage(err, "--in-place is for repair only");
    if (o.command == "check")
        return Check(o, out, err);
    if (o.command == "repair")
        return Repair(o, out, err);

    static const char *const kViews[] = {"", "days", "hours", "months"};
    bool known = false;
    for (int i = 0; i < 4; i++)
        known = known || o.command == kViews[i];
    if (!known)
        return Usage(err, "unknown command \"" + o.command + "\"");
    std::string folder;
    if (int status = ChooseFolder(o, &folder, err))
        return status;
    if (o.command == "days")
        return Days(o, folder, out, err);
    if (o.command == "hours")
        return Hours(o, folder, out, err);
    if (o.command == "months")
        return Months(o, folder, out, err);
    return Summary(o, folder, out, err);
}
