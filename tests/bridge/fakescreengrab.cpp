#include <cstdio>
#include <cstdlib>

/// Writes a word to the file named by FAKE_SCREEN_GRAB: proof that it was called.
extern "C" __attribute__((visibility("default"))) void screenShot()
{
    const char *path = std::getenv("FAKE_SCREEN_GRAB");
    std::FILE *file = path ? std::fopen(path, "a") : nullptr;
    if (!file)
        std::abort();
    std::fputs("grabbed\n", file);
    std::fclose(file);
}
