// main.cpp: qvlog, the command-line reader of Quorvane's monthly traffic logs.
#include "tools/qvlog/qvlog.h"

int main(int argc, char **argv)
{
    return RunQvlog(argc, argv, stdout, stderr);
}
