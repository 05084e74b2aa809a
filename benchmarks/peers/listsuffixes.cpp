// listsuffixes: prints how many milliseconds it takes to say what opens each kind of the suite's
// documents, once the session's lists and desktop entries are in memory.

#include <chrono>
#include <cstdio>

#include "doctor/why/open/open.h"

int main()
{
    const doctor::OpenQuestion question(doctor::thisMachine());
    question.ofSuffixes();
    const auto begin = std::chrono::steady_clock::now();
    const QVector<doctor::SuffixOpening> rows = question.ofSuffixes();
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begin;
    std::printf("%.3f\n", taken.count());
    return rows.size() == doctor::OpenQuestion::suffixes().size() ? 0 : 1;
}
