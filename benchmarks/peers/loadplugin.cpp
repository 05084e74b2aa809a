// loadplugin LIBRARY: loads and unloads LIBRARY many times and prints the median time of one load
// in microseconds. This program links what the library needs, so that only the library itself is
// loaded.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include <dlfcn.h>

namespace {

constexpr int rounds = 2001;

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        void *library = ::dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        const std::chrono::duration<double, std::micro> time =
            std::chrono::steady_clock::now() - begin;
        if (!library) {
            std::fprintf(stderr, "%s\n", ::dlerror());
            return 1;
        }
        ::dlclose(library);
        times.push_back(time.count());
    }
    const auto middle = times.begin() + rounds / 2;
    std::nth_element(times.begin(), middle, times.end());
    std::printf("%.2f\n", *middle);
    return 0;
}
