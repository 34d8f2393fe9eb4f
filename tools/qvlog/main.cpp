// main.cpp: qvlog, the command-line reader of Quorvane's monthly traffic logs.
#include "tools/qvlog/qvlog.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

int main(int argc, char **argv)
{
#ifdef _WIN32
    // LF line ends on every system, as the program's own files have them.
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    return RunQvlog(argc, argv, stdout, stderr);
}
