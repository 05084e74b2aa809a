#include "programs/checktool/timelimit.h"

#include <csignal>

#include <unistd.h>

#include "programs/process/boundedprogram.h"

namespace programs {

namespace {

extern "C" void endForTime(int)
{
    constexpr char message[] = "vyrEnvCheckTool: a disk or a program does not answer\n";
    const ssize_t written = write(STDERR_FILENO, message, sizeof message - 1);
    static_cast<void>(written);
    endRunningProgram();
    _exit(1);
}

} // namespace

void limitTime(unsigned int seconds)
{
    std::signal(SIGALRM, endForTime);
    alarm(seconds);
}

} // namespace programs
